#include "platform/connectivity.h"

#include <windows.h>
#include <wininet.h>

namespace latchkey::platform {
namespace {

class WindowsConnectivity final : public Connectivity {
 public:
  bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t dwReserved) override {
    DWORD flags = *lpdwFlags;
    const BOOL connected = ::InternetGetConnectedState(&flags, dwReserved);
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
