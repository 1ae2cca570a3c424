#include "platform/linux/default_route.h"

#include <gtest/gtest.h>

#include <string>

namespace latchkey::test {
namespace {

using platform::HasDefaultIpv4Route;
using platform::HasDefaultIpv6Route;

const std::string kIpv4Heading =
    "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT   \n";
const std::string kIpv4Default =
    "eth0\t00000000\t0100A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0    \n";
const std::string kIpv4Local = "eth0\t0000A8C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0    \n";

// The line of an IPv4 default route.
std::string Ipv4Route(const std::string& interface, const std::string& flags) {
  return interface + "\t00000000\t0100A8C0\t" + flags + "\t0\t0\t0\t00000000\t0\t0\t0\n";
}

// The line of an IPv6 route with a prefix of `length` (hexadecimal).
std::string Ipv6Route(const std::string& prefix, const std::string& length,
                      const std::string& flags, const std::string& interface) {
  const std::string zero(32, '0');
  return prefix + ' ' + length + ' ' + zero + " 00 fe80000000000000021122fffe334455 " +
         "00000400 00000001 00000000 " + flags + "     " + interface + '\n';
}

const std::string kEverywhere(32, '0');

TEST(DefaultRouteTest, AnIpv4DefaultRouteIsFoundInAnyLine) {
  EXPECT_TRUE(HasDefaultIpv4Route(kIpv4Heading + kIpv4Default + kIpv4Local));
  EXPECT_TRUE(HasDefaultIpv4Route(kIpv4Heading + kIpv4Local + kIpv4Default));
  EXPECT_TRUE(HasDefaultIpv4Route(kIpv4Default.substr(0, kIpv4Default.size() - 1)));
}

TEST(DefaultRouteTest, ARouteToTheLocalNetworkIsNoDefaultRoute) {
  EXPECT_FALSE(HasDefaultIpv4Route(kIpv4Heading + kIpv4Local));
  EXPECT_FALSE(HasDefaultIpv4Route(kIpv4Heading));
  EXPECT_FALSE(HasDefaultIpv4Route(""));
}

TEST(DefaultRouteTest, ARouteToHalfOfAllIpv4AddressesIsNoDefaultRoute) {
  EXPECT_FALSE(HasDefaultIpv4Route("tun0\t00000000\t0100A8C0\t0003\t0\t0\t0\t00000080\t0\t0\t0\n"));
}

TEST(DefaultRouteTest, AnIpv4RouteMustBeUpAndNotReject) {
  EXPECT_TRUE(HasDefaultIpv4Route(Ipv4Route("ppp0", "0001")));
  EXPECT_FALSE(HasDefaultIpv4Route(Ipv4Route("ppp0", "0002")));
  EXPECT_FALSE(HasDefaultIpv4Route(Ipv4Route("ppp0", "0201")));
  EXPECT_FALSE(HasDefaultIpv4Route(Ipv4Route("lo", "0001")));
}

TEST(DefaultRouteTest, AnIpv6DefaultRouteIsFound) {
  EXPECT_TRUE(HasDefaultIpv6Route(Ipv6Route("fe80000000000000", "40", "00000001", "eth0") +
                                  Ipv6Route(kEverywhere, "00", "00450003", "eth0")));
}

TEST(DefaultRouteTest, AnIpv6RouteMustBeUpAndLeaveTheMachine) {
  // The kernel's lines without any connection.
  EXPECT_FALSE(HasDefaultIpv6Route(Ipv6Route(kEverywhere, "00", "00200200", "lo")));
  EXPECT_FALSE(HasDefaultIpv6Route(Ipv6Route(kEverywhere, "00", "00000001", "lo")));
  EXPECT_FALSE(HasDefaultIpv6Route(Ipv6Route(kEverywhere, "00", "00000201", "eth0")));
  EXPECT_FALSE(HasDefaultIpv6Route(Ipv6Route(kEverywhere, "00", "00000002", "eth0")));
  EXPECT_FALSE(HasDefaultIpv6Route(Ipv6Route(kEverywhere, "60", "00000001", "eth0")));
  EXPECT_FALSE(HasDefaultIpv6Route(""));
}

TEST(DefaultRouteTest, OtherLinesAreSkipped) {
  for (const char* const line :
       {"\n", "eth0\n", "eth0 00000000 00000000 zz 0 0 0 00000000\n",
        "eth0 00000000 00000000 0001x 0 0 0 00000000\n", "eth0 00000000 00000000 0001 0 0 0\n"}) {
    EXPECT_FALSE(HasDefaultIpv4Route(line)) << line;
    EXPECT_FALSE(HasDefaultIpv6Route(line)) << line;
    EXPECT_TRUE(HasDefaultIpv4Route(line + kIpv4Default)) << line;
  }
}

}  // namespace
}  // namespace latchkey::test
