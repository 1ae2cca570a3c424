// The use of the system's random source, and its failures.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "crypto/crypto_state.h"
#include "crypto/random_number.h"
#include "latchkey/cls_crypto_api.h"
#include "tests/support/random_source_script.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

class RandomSourceUseTest : public WatchedModule {
 protected:
  using State = std::array<std::uint64_t, 2>;

  // The generator's state after drawing a number from a fixed state with these random bytes.
  static State StateAfterDraw(const std::array<std::uint8_t, 16>& random) {
    const RandomSourceScript script([&](std::span<std::uint8_t> bytes) {
      EXPECT_EQ(bytes.size(), random.size());
      std::copy_n(random.begin(), std::min(bytes.size(), random.size()), bytes.begin());
      return static_cast<long>(bytes.size());
    });
    ThisThreadCrypto().generatorState = {1, 2};
    static_cast<void>(RandomNumberInRange(65, 122));
    return ThisThreadCrypto().generatorState;
  }
};

TEST_F(RandomSourceUseTest, EachOfSixteenBytesChangesTheGeneratorsState) {
  probe.SetTicks({123'456});
  const State before = StateAfterDraw({});
  EXPECT_EQ(StateAfterDraw({}), before);
  for (std::size_t i = 0; i < 16; ++i) {
    std::array<std::uint8_t, 16> random{};
    random.at(i) = 1;
    EXPECT_NE(StateAfterDraw(random), before) << "byte " << i;
  }
}

TEST_F(RandomSourceUseTest, WithoutRandomBytesASaltOfLettersFails) {
  clsCryptoAPI api;
  const RandomSourceScript script([](auto) { return kInputOutputError; });
  EXPECT_EQ(api.CreateSaltValue(8, true), Text());
  EXPECT_EQ(record.ErrorLocationID(), 434);
  EXPECT_EQ(record.RTErrorNumber(), 5);
}

}  // namespace
}  // namespace latchkey::test
