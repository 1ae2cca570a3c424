#include "base/secure_memory.h"

#include <cstring>

namespace latchkey {
namespace {

// Read at each call, so that no optimiser knows what it does.
void* (*volatile const kFill)(void*, int, std::size_t) = std::memset;

}  // namespace

void SecureWipe(void* memory, std::size_t size) noexcept {
  if (size > 0) kFill(memory, 0, size);
}

}  // namespace latchkey
