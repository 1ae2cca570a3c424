// Wiping of what functions that have returned left on the stack.
#pragma once

#include "platform/export.h"

namespace latchkey::platform {

// Overwrites the 4 KiB of the stack below the caller's frame. The functions of Nettle use fewer:
// MD4 copies its block there, and CBC decryption its plaintext.
void WipeStackBelow() noexcept;

// Overwrites the 16 KiB below the caller's frame, in which raising an exception saved the registers
// with what was copied last.
LATCHKEY_API void WipeStackOfException() noexcept;

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
