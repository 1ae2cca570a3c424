// Wiping of what functions that have returned left on the stack.
#pragma once

namespace latchkey::platform {

// Overwrites the 4 KiB of the stack below the caller's frame. Hashes and ciphers that take one
// block after the other use fewer, and leave their last block, their state and parts of keys there.
void WipeStackBelow() noexcept;

// Overwrites the 8 KiB below the caller's frame, where kernels that keep many blocks at once spill
// what their registers cannot hold.
void WipeStackBelowBatches() noexcept;

// Overwrites the 16 KiB below the caller's frame: raising an exception saves there the registers
// with what was copied last.
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

}  // namespace latchkey::platform
