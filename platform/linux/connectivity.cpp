#include "platform/connectivity.h"

#include <fstream>
#include <iterator>
#include <string>

#include "base/never_destroyed.h"
#include "platform/linux/default_route.h"

namespace latchkey::platform {
namespace {

std::string ContentOf(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class LinuxConnectivity final : public Connectivity {
 public:
  bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t /*dwReserved*/) override {
    const bool connected = HasDefaultRoute(kRouteTables);
    *lpdwFlags = connected ? kLocalNetwork | kConfigured : 0;
    return connected;
  }
};

}  // namespace

const char* const kRouteTables = "/proc/net";

bool HasDefaultRoute(const std::string& folder) {
  return HasDefaultIpv4Route(ContentOf(folder + "/route")) ||
         HasDefaultIpv6Route(ContentOf(folder + "/ipv6_route"));
}

Connectivity& SystemConnectivity() {
  static NeverDestroyed<LinuxConnectivity> connectivity;
  return connectivity.Get();
}

}  // namespace latchkey::platform
