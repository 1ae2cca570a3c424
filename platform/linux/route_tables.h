// The routing tables of the machine.
#pragma once

#include <string>

namespace latchkey::platform {

// The folder of the kernel's tables.
extern const char* const kRouteTables;

// Whether the IPv4 table (the file route) or the IPv6 table (ipv6_route) in the folder has a
// default route. An unreadable table has none.
[[nodiscard]] bool HasDefaultRoute(const std::string& folder);

}  // namespace latchkey::platform
