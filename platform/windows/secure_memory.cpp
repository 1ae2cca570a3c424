#include "platform/secure_memory.h"

#include <windows.h>

namespace latchkey::platform {

// mingw-w64 defines SecureZeroMemory inline: for i686 as stores through a volatile pointer, for
// x86_64 as volatile assembly. The machine code that g++ 12 makes of it at -O2 has the wipe.
void SecureWipe(void* memory, std::size_t size) noexcept {
  if (size > 0) SecureZeroMemory(memory, size);
}

}  // namespace latchkey::platform
