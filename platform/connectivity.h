// The machine's configured Internet connection.
#pragma once

#include <cstdint>

namespace latchkey::platform {

class Connectivity {
 public:
  static constexpr std::uint32_t kLocalNetwork = 0x02;
  static constexpr std::uint32_t kConfigured = 0x40;

  Connectivity() = default;
  Connectivity(const Connectivity&) = delete;
  Connectivity& operator=(const Connectivity&) = delete;
  virtual ~Connectivity() = default;

  // True when connected; *lpdwFlags describes the connection. Makes no network traffic. On Linux a
  // configured default route (IPv4 or IPv6) counts as connected and gives kLocalNetwork |
  // kConfigured, its absence gives 0. Raises FileNotFound or DllFunctionNotFound on a
  // Windows without wininet or this function of it.
  virtual bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t dwReserved) = 0;
};

// The platform's answer. Lives as long as the process; any thread may use it.
Connectivity& SystemConnectivity();

}  // namespace latchkey::platform
