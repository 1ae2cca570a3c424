// Reads the Linux kernel's routing tables as /proc/net shows them: is there a default route?
//
// A default route counts when it is up, does not reject what it matches, and leaves the machine
// (its interface is not the loopback). Lines that do not read as routes are passed over.
#pragma once

#include <string_view>

namespace latchkey::platform {

// `table` is the content of /proc/net/route.
[[nodiscard]] bool HasDefaultIpv4Route(std::string_view table);

// `table` is the content of /proc/net/ipv6_route.
[[nodiscard]] bool HasDefaultIpv6Route(std::string_view table);

}  // namespace latchkey::platform
