#include "platform/run_time.h"

#include <windows.h>

#include <pthread.h>

#include <array>

// The module's own directory of thread-local storage, which the C run-time defines.
extern "C" const IMAGE_TLS_DIRECTORY _tls_used;  // NOLINT: its name

namespace __gnu_cxx {  // NOLINT: its name
// Frees the memory that the C++ run-time sets aside for throwing without memory.
void __freeres();  // NOLINT: its name
}  // namespace __gnu_cxx

// mingw-w64's thread library, on which the compiler's run-time stands, keeps a thread-local slot
// from its first use on, and for each thread two handles until the thread ends. Its clean-up at
// unload frees neither. There is no name by which the slot could be asked for, but it is the one
// that loses its value when the library is told that the thread ends.
namespace latchkey::platform {
namespace {

constexpr DWORD kSlots = TLS_MINIMUM_AVAILABLE + 1024;  // a process has no more

using SlotValues = std::array<void*, kSlots>;

void ReadSlots(SlotValues& values) {
  for (DWORD i = 0; i < kSlots; ++i) values[i] = TlsGetValue(i);
}

// What the loader calls when a thread ends, for the calling thread and this module alone.
void EndThreadInRunTime() {
  const auto* callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(_tls_used.AddressOfCallBacks);
  for (; callback != nullptr && *callback != nullptr; ++callback) {
    (*callback)(nullptr, DLL_THREAD_DETACH, nullptr);
  }
}

}  // namespace

void ReleaseRunTime() noexcept {
  pthread_self();  // from now on the slot has a value, whatever this thread did before
  SlotValues before;
  ReadSlots(before);
  EndThreadInRunTime();
  for (DWORD i = 0; i < kSlots; ++i) {
    if (before[i] != nullptr && TlsGetValue(i) == nullptr) TlsFree(i);
  }
  __gnu_cxx::__freeres();
}

}  // namespace latchkey::platform
