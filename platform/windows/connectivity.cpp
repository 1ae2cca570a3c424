#include "platform/connectivity.h"

#include <windows.h>
#include <wininet.h>

#include <atomic>

#include "platform/windows/system_library.h"

namespace latchkey::platform {
namespace {

std::atomic<HMODULE> keptLibrary{nullptr};

// Loading it takes much longer than the query. Two threads may load at once; the second one's
// reference goes back unused.
HMODULE InternetLibrary() {
  HMODULE library = keptLibrary.load();
  if (library != nullptr) return library;
  UniqueLibrary fresh = LoadSystemLibrary(L"wininet.dll");
  return keptLibrary.compare_exchange_strong(library, fresh.Get()) ? fresh.Release() : library;
}

class WindowsConnectivity final : public Connectivity {
 public:
  bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t dwReserved) override {
    const auto query = reinterpret_cast<decltype(&::InternetGetConnectedState)>(
        reinterpret_cast<void*>(FunctionOf(InternetLibrary(), "InternetGetConnectedState")));
    DWORD flags = *lpdwFlags;
    const BOOL connected = query(&flags, dwReserved);
    *lpdwFlags = flags;
    return connected != FALSE;
  }
};

}  // namespace

UniqueLibrary TakeInternetLibrary() noexcept {
  return UniqueLibrary(keptLibrary.exchange(nullptr));
}

Connectivity& SystemConnectivity() {
  static WindowsConnectivity connectivity;
  return connectivity;
}

}  // namespace latchkey::platform
