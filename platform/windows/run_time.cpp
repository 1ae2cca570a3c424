#include "platform/windows/run_time.h"

#include <windows.h>

#include <pthread.h>

#include <array>

// The module's own directory of thread-local storage, which the C run-time defines.
extern "C" const IMAGE_TLS_DIRECTORY _tls_used;  // NOLINT: its name

namespace __gnu_cxx {  // NOLINT: its name
// Frees the memory that the C++ run-time sets aside for throwing without memory.
void __freeres();  // NOLINT: its name
}  // namespace __gnu_cxx

// mingw-w64's thread library, which the compiler's run-time uses, keeps a thread-local slot from
// its first use on, and two handles for each thread until the thread ends. Its clean-up at unload
// frees neither. The slot has no name, but it is the one that loses its value when the library is
// notified that the thread ends.
namespace latchkey::platform {
namespace {

constexpr DWORD kSlots = TLS_MINIMUM_AVAILABLE + 1024;  // the maximum of a process

using SlotValues = std::array<void*, kSlots>;

void ReadSlots(SlotValues& values) {
  for (DWORD i = 0; i < kSlots; ++i) values[i] = TlsGetValue(i);
}

// Runs the loader's callbacks for the end of a thread, for the calling thread and this module only.
void EndThreadInRunTime() {
  const auto* callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(_tls_used.AddressOfCallBacks);
  for (; callback != nullptr && *callback != nullptr; ++callback) {
    (*callback)(nullptr, DLL_THREAD_DETACH, nullptr);
  }
}

}  // namespace

void ReleaseRunTime() noexcept {
  pthread_self();  // ensures that the slot has a value
  SlotValues before;
  ReadSlots(before);
  EndThreadInRunTime();
  for (DWORD i = 0; i < kSlots; ++i) {
    if (before[i] != nullptr && TlsGetValue(i) == nullptr) TlsFree(i);
  }
  __gnu_cxx::__freeres();
}

}  // namespace latchkey::platform
