// The exception that the library raises.
#pragma once

#include <cstdint>
#include <exception>

#include "latchkey/export.h"
#include "latchkey/types.h"

namespace latchkey {

// The faults that can happen, by their Automation numbers.
enum class FaultNumber : std::int32_t {
  InvalidProcedureCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  FileNotFound = 53,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  DllFunctionNotFound = 453,
};

// The standard Automation text of a fault. Never empty.
[[nodiscard]] LATCHKEY_API TextView DescriptionOf(FaultNumber number) noexcept;

// A run-time fault, with Automation's number and description for the same condition. An operation
// records its faults and raises none, except ObjectNotSet on a thread without an error record.
// Members that are not operations raise theirs. A failed allocation that reaches the caller is
// std::bad_alloc.
class LATCHKEY_API Fault final : public std::exception {
 public:
  explicit Fault(FaultNumber number) noexcept : number_(number) {}

  [[nodiscard]] std::int32_t Number() const noexcept { return static_cast<std::int32_t>(number_); }
  [[nodiscard]] TextView Description() const noexcept { return DescriptionOf(number_); }
  [[nodiscard]] const char* what() const noexcept override { return "Latchkey run-time fault"; }

 private:
  FaultNumber number_;
};

}  // namespace latchkey
