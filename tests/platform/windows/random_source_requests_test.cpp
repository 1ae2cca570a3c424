// Requests too large for one call.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "platform/system_random.h"
#include "tests/support/random_source_script.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kLargestRequest = 0x7FFFFFFF;

struct Request {
  std::uintptr_t place;
  std::size_t size;

  friend bool operator==(const Request&, const Request&) = default;
};

// The call is replaced, so the memory need not exist.
TEST(RandomSourceRequestsTest, AreSplitWithoutAGap) {
  std::array<std::uint8_t, 1> first{};
  const auto place = reinterpret_cast<std::uintptr_t>(first.data());
  std::vector<Request> requests;
  const RandomSourceScript script([&](std::span<std::uint8_t> bytes) {
    requests.push_back({reinterpret_cast<std::uintptr_t>(bytes.data()), bytes.size()});
    return static_cast<long>(bytes.size());
  });
  ASSERT_TRUE(platform::FillRandom({first.data(), kLargestRequest + 10}));
  EXPECT_EQ(requests,
            (std::vector<Request>{{place, kLargestRequest}, {place + kLargestRequest, 10}}));
}

TEST(RandomSourceRequestsTest, AFailureOfTheSecondPartIsAFailure) {
  std::array<std::uint8_t, 1> first{};
  int calls = 0;
  const RandomSourceScript script([&](std::span<std::uint8_t> bytes) {
    return ++calls == 1 ? static_cast<long>(bytes.size()) : -5L;
  });
  EXPECT_FALSE(platform::FillRandom({first.data(), kLargestRequest + 10}));
  EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace latchkey::test
