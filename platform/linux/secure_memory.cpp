#include "platform/secure_memory.h"

#include <cstring>

namespace latchkey::platform {

void SecureWipe(void* memory, std::size_t size) noexcept {
  if (size > 0) ::explicit_bzero(memory, size);
}

}  // namespace latchkey::platform
