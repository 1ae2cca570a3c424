// A run-time fault: the one exception type that the component's own code throws.
//
// A fault carries the number and the description that Automation gives the same condition. It is
// caught by the trap of the operation it happens in (error_trap.h) and recorded there; in the few
// routines without a trap, and on a thread without an error record, it reaches the client.
#pragma once

#include <array>
#include <cstdint>
#include <exception>

#include "base/export.h"
#include "base/text.h"

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

// All of them, in ascending order.
inline constexpr std::array kFaultNumbers{
    FaultNumber::InvalidProcedureCall, FaultNumber::Overflow,       FaultNumber::OutOfMemory,
    FaultNumber::SubscriptOutOfRange,  FaultNumber::DivisionByZero, FaultNumber::TypeMismatch,
    FaultNumber::FileNotFound,         FaultNumber::ObjectNotSet,   FaultNumber::InvalidUseOfNull,
    FaultNumber::DllFunctionNotFound};

// The standard Automation text of a fault. Never empty.
[[nodiscard]] LATCHKEY_API TextView DescriptionOf(FaultNumber number) noexcept;

class LATCHKEY_API Fault final : public std::exception {
 public:
  explicit Fault(FaultNumber number) noexcept : number_(number) {}

  [[nodiscard]] std::int32_t Number() const noexcept { return static_cast<std::int32_t>(number_); }
  [[nodiscard]] TextView Description() const noexcept { return DescriptionOf(number_); }
  [[nodiscard]] const char* what() const noexcept override { return "Latchkey run-time fault"; }

 private:
  FaultNumber number_;
};

// The exception being handled, as a fault: a fault stays itself, failed memory is OutOfMemory, a
// missing library of the system is FileNotFound, a missing function of one DllFunctionNotFound, and
// anything else is InvalidProcedureCall. Call it inside a catch clause only.
[[nodiscard]] LATCHKEY_API Fault CurrentFault() noexcept;

}  // namespace latchkey
