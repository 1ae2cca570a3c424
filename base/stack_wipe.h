// Wipes data that returned functions left on the stack.
#pragma once

namespace latchkey {

// Overwrites the 4 KiB of the stack below the caller's frame. Hashes and ciphers that process one
// block at a time use less, and leave their last block, their state and parts of keys there.
void WipeStackBelow() noexcept;

// Overwrites the 8 KiB below the caller's frame, where kernels that process many blocks at once
// spill registers.
void WipeStackBelowBatches() noexcept;

// Overwrites the 16 KiB below the caller's frame, where raising an exception saves registers that
// hold recently copied data.
void WipeStackFarBelow() noexcept;

// Calls WipeStackBelow when the scope ends. The scope must be a function that only calls others,
// since its own frame is not wiped.
class StackWipe {
 public:
  StackWipe() = default;
  StackWipe(const StackWipe&) = delete;
  StackWipe& operator=(const StackWipe&) = delete;
  ~StackWipe() { WipeStackBelow(); }
};

}  // namespace latchkey
