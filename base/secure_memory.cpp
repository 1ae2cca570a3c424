#include "base/secure_memory.h"

#include <cstring>

namespace latchkey {
namespace {

// Volatile, so that the optimizer cannot know which function is called.
void* (*volatile const kFill)(void*, int, std::size_t) = std::memset;

}  // namespace

void SecureWipe(void* memory, std::size_t size) noexcept {
  if (size > 0) kFill(memory, 0, size);
}

}  // namespace latchkey
