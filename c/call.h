// What the functions of the C interface share: no exception leaves them, failures become statuses,
// and outputs follow one rule (latchkey.h).
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "base/faults.h"
#include "diagnostics/error_trap.h"
#include "diagnostics/thread_state.h"
#include "latchkey.h"
#include "platform/stack_wipe.h"

namespace latchkey {

using InputBytes = std::span<const std::uint8_t>;

[[nodiscard]] int StatusOf(const Fault& fault) noexcept;

// The status that goes with an application error number of the error record.
[[nodiscard]] int StatusOfNumber(std::int32_t number) noexcept;

// The status that goes with what the thread's record says; LATCHKEY_OK when it says nothing.
[[nodiscard]] int StatusOfRecord();

// Records a check that failed, and gives its status.
[[nodiscard]] int Refuse(const CheckSite& site);

// Runs the body of a function, which gives a status. No exception leaves it, nor what one left
// behind.
template <class Body>
int Guarded(Body&& body) noexcept {
  int status = LATCHKEY_OK;
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    status = StatusOf(CurrentFault());
  }
  platform::WipeStackFarBelow();
  return status;
}

// Runs the body of an operation under its error trap, as the operation of the component that the
// trap belongs to: a fault is recorded.
template <class Body>
int Trapped(const TrapSite& site, Body&& body) {
  int status = LATCHKEY_OK;
  const bool completed = RunTrapped(site, [&] { status = std::forward<Body>(body)(); });
  return completed ? status : StatusOfRecord();
}

// The same, and clears the record first.
template <class Body>
int Operation(const TrapSite& site, Body&& body) {
  return Trapped(site, [&] {
    ClearErrorRecord();
    return std::forward<Body>(body)();
  });
}

// What a caller gives as input; a null pointer counts only with a length of 0.
class Input {
 public:
  Input(const void* data, std::size_t length) noexcept
      : data_(static_cast<const std::uint8_t*>(data)), length_(length) {}

  [[nodiscard]] bool IsGood() const noexcept { return data_ != nullptr || length_ == 0; }
  [[nodiscard]] InputBytes Bytes() const noexcept { return {data_, length_}; }

 private:
  const std::uint8_t* data_;
  std::size_t length_;
};

// A caller's buffer and the length beside it. Call Prepare first.
class Output {
 public:
  Output(void* data, std::size_t* length) noexcept
      : data_(static_cast<std::uint8_t*>(data)), length_(length) {}

  // Takes the room from the length and sets the length to 0. LATCHKEY_BAD_ARGUMENT for a missing
  // pointer, a bad input or one that overlaps the buffer. The buffer is not touched: a length that
  // the caller forgot to set says nothing about it.
  [[nodiscard]] int Prepare(std::initializer_list<Input> inputs) noexcept;

  // Hands the result over, or clears the buffer when it is too small. Text gets a zero at its end.
  [[nodiscard]] int Deliver(InputBytes result) noexcept;
  [[nodiscard]] int DeliverText(std::string_view text) noexcept;

 private:
  [[nodiscard]] bool HasRoom(std::size_t needed) noexcept;

  std::uint8_t* data_;
  std::size_t* length_;
  std::size_t room_ = 0;
};

// Runs the body of a function with an output; `inputs` are all that it reads.
template <class Body>
int WithOutput(Output& output, std::initializer_list<Input> inputs, Body&& body) noexcept {
  const int prepared = output.Prepare(inputs);
  return prepared == LATCHKEY_OK ? Guarded(std::forward<Body>(body)) : prepared;
}

}  // namespace latchkey
