// Shared by the functions of the C interface: no exception leaves them, failures become statuses
// with the component's numbers, and all outputs follow the rule in latchkey.h.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>

#include "base/faults.h"
#include "base/stack_wipe.h"
#include "diagnostics/failure_table.h"
#include "latchkey.h"
#include "platform/cancellation_hold.h"

namespace latchkey::c {

using InputBytes = std::span<const std::uint8_t>;

// A function's status, and the check that failed, if any.
struct Outcome {
  // NOLINTNEXTLINE(google-explicit-constructor): bodies return a plain status
  Outcome(std::int32_t result, const CheckSite* failed = nullptr) noexcept
      : status(result), check(failed) {}
  // NOLINTNEXTLINE(google-explicit-constructor): or the check
  Outcome(const CheckSite& failed) noexcept;

  std::int32_t status;
  const CheckSite* check;
};

// Fill in `failure`, which may be null, and return the status.
std::int32_t Report(latchkey_failure* failure, const Outcome& outcome) noexcept;
std::int32_t Report(latchkey_failure* failure, const Fault& fault, const TrapSite& trap) noexcept;

// Runs the body of a function, which returns an Outcome or a status. Catches every exception and
// delays cancellation of the thread. `trap` is the location of a fault.
template <class Body>
std::int32_t Call(latchkey_failure* failure, const TrapSite& trap, Body&& body) noexcept {
  if (failure != nullptr && failure->size != sizeof *failure) return LATCHKEY_BAD_ARGUMENT;
  const platform::CancellationHold hold;
  try {
    return Report(failure, std::forward<Body>(body)());
  } catch (...) {
    const std::int32_t status = Report(failure, CurrentFault(), trap);
    WipeStackFarBelow();
    return status;
  }
}

// Memory that a caller passes. A null pointer is good only with a length of 0.
class Memory {
 public:
  Memory(const void* data, std::size_t length) noexcept
      : data_(static_cast<const std::uint8_t*>(data)), length_(length) {}

  [[nodiscard]] bool IsGood() const noexcept;
  [[nodiscard]] bool Overlaps(const Memory& other) const noexcept;
  [[nodiscard]] InputBytes Bytes() const noexcept { return {data_, length_}; }

 private:
  const std::uint8_t* data_;
  std::size_t length_;
};

// A caller's buffer and its length. The constructor reads the room from `*length` and clears it.
class Output {
 public:
  Output(void* data, std::size_t* length) noexcept
      : data_(static_cast<std::uint8_t*>(data)),
        length_(length),
        room_(length == nullptr ? 0 : std::exchange(*length, 0)) {}

  // False for a missing pointer, and for an input that is bad or overlaps the buffer. Call first.
  [[nodiscard]] bool IsGood(std::initializer_list<Memory> inputs) const noexcept;

  [[nodiscard]] std::span<std::uint8_t> Room() const noexcept { return {data_, room_}; }

  // Sets the length of a result that is in the buffer.
  std::int32_t Finish(std::size_t length) noexcept;
  // Sets the length of a result that does not fit.
  std::int32_t TooSmall(std::size_t needed) noexcept;
  // Copies a result to the buffer, or reports that it does not fit.
  std::int32_t Deliver(InputBytes result) noexcept;

 private:
  std::uint8_t* data_;
  std::size_t* length_;
  std::size_t room_;
};

}  // namespace latchkey::c
