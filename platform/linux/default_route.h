// Searches the Linux kernel's routing tables in the format of /proc/net for a default route.
//
// A default route counts if it is up, does not reject its packets, and leaves the machine (its
// interface is not the loopback). Lines that are not routes are skipped.
#pragma once

#include <string>
#include <string_view>

namespace latchkey::platform {

// `table` is the content of /proc/net/route.
[[nodiscard]] bool HasDefaultIpv4Route(std::string_view table);

// `table` is the content of /proc/net/ipv6_route.
[[nodiscard]] bool HasDefaultIpv6Route(std::string_view table);

// The folder of the kernel's tables.
extern const char* const kRouteTables;

// Whether the IPv4 table (the file route) or the IPv6 table (ipv6_route) in the folder has a
// default route. An unreadable table has none.
[[nodiscard]] bool HasDefaultRoute(const std::string& folder);

}  // namespace latchkey::platform
