// The files from which the connection is read.
#include "platform/linux/default_route.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/connectivity.h"

namespace latchkey::test {
namespace {

using platform::HasDefaultRoute;
using platform::kRouteTables;

const std::string kIpv4Route = "eth0 00000000 0100A8C0 0003 0 0 0 00000000 0 0 0\n";
const std::string kIpv6Route = std::string(32, '0') + " 00 " + std::string(32, '0') +
                               " 00 fe800000000000000000000000000001 00000400 00000001 00000000 " +
                               "00000003 eth0\n";

class RouteTablesTest : public testing::Test {
 protected:
  RouteTablesTest() {
    std::string name = testing::TempDir() + "routes-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder");
    folder = name;
  }
  ~RouteTablesTest() override { std::filesystem::remove_all(folder); }

  void Write(const char* table, const std::string& content) const {
    std::ofstream(folder / table) << content;
  }
  [[nodiscard]] bool Connected() const { return HasDefaultRoute(folder.string()); }

  std::filesystem::path folder;
};

TEST_F(RouteTablesTest, WithoutTablesThereIsNoRoute) { EXPECT_FALSE(Connected()); }

TEST_F(RouteTablesTest, OneIpv4RouteIsAConnection) {
  Write("route", kIpv4Route);
  EXPECT_TRUE(Connected());
  Write("ipv6_route", "");
  EXPECT_TRUE(Connected());
}

TEST_F(RouteTablesTest, OneIpv6RouteIsAConnection) {
  Write("ipv6_route", kIpv6Route);
  EXPECT_TRUE(Connected());
  Write("route", "");
  EXPECT_TRUE(Connected());
}

TEST_F(RouteTablesTest, EachTableIsReadInItsOwnForm) {
  Write("route", kIpv6Route);
  Write("ipv6_route", kIpv4Route);
  EXPECT_FALSE(Connected());
}

// A machine without a default route cannot show the folder by its result, so this compares files.
TEST_F(RouteTablesTest, TheSystemsConnectionComesFromTheKernelsTables) {
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(kRouteTables) / "route"));
  std::uint32_t flags = 0;
  EXPECT_EQ(platform::SystemConnectivity().InternetGetConnectedState(&flags, 0),
            HasDefaultRoute(kRouteTables));
}

}  // namespace
}  // namespace latchkey::test
