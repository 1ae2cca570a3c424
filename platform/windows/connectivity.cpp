#include "platform/connectivity.h"

#include <windows.h>
#include <wininet.h>

#include <atomic>

#include "latchkey/fault.h"
#include "platform/windows/system_library.h"

namespace latchkey::platform {
namespace {

// Loads wininet and keeps it until the process ends: its threads may still run after the last
// query, so freeing it is not safe. One reference is enough, even if this module is loaded several
// times.
HMODULE LoadInternetLibrary() {
  const UniqueLibrary library = LoadSystemLibrary(L"wininet.dll");
  HMODULE pinned = nullptr;
  const BOOL done =
      GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         reinterpret_cast<const wchar_t*>(library.Get()), &pinned);
  if (done == FALSE) throw Fault(FaultNumber::FileNotFound);
  return pinned;
}

// Loading takes much longer than the query. Two threads may load the library at once.
HMODULE InternetLibrary() {
  static std::atomic<HMODULE> kept{nullptr};
  HMODULE library = kept.load();
  if (library == nullptr) kept.store(library = LoadInternetLibrary());
  return library;
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

Connectivity& SystemConnectivity() {
  static WindowsConnectivity connectivity;
  return connectivity;
}

}  // namespace latchkey::platform
