#include "platform/connectivity.h"

#include <windows.h>
#include <wininet.h>

#include "platform/windows/system_library.h"

namespace latchkey::platform {
namespace {

// The Internet library is loaded for each query and freed after it: most clients never ask, some
// systems have no such library, and nothing is left for the DLL's unloading.
class WindowsConnectivity final : public Connectivity {
 public:
  bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t dwReserved) override {
    const UniqueLibrary library = LoadSystemLibrary(L"wininet.dll");
    const auto query = reinterpret_cast<decltype(&::InternetGetConnectedState)>(
        reinterpret_cast<void*>(FunctionOf(library, "InternetGetConnectedState")));
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
