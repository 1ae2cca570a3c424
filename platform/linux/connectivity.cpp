#include "platform/connectivity.h"

#include <fstream>
#include <iterator>
#include <string>

#include "platform/default_route.h"
#include "platform/never_destroyed.h"

namespace latchkey::platform {
namespace {

std::string ContentOf(const char* path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class LinuxConnectivity final : public Connectivity {
 public:
  bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t /*dwReserved*/) override {
    const bool connected = HasDefaultIpv4Route(ContentOf("/proc/net/route")) ||
                           HasDefaultIpv6Route(ContentOf("/proc/net/ipv6_route"));
    *lpdwFlags = connected ? kLocalNetwork | kConfigured : 0;
    return connected;
  }
};

}  // namespace

Connectivity& SystemConnectivity() {
  static NeverDestroyed<LinuxConnectivity> connectivity;
  return connectivity.Get();
}

}  // namespace latchkey::platform
