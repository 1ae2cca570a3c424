// A service object for which the test sets the random data and the seed text.
#pragma once

#include <string_view>

#include "tests/support/watched_service.h"

namespace latchkey::test {

// The fixture of tests of random data. Its provider does not use the platform's.
class RandomService : public WatchedServiceOnPlainProvider {
 protected:
  // The result of BuildSeedText. Call SetSeed before each operation.
  static constexpr TextView kSeed = u"123456123456";

  RandomService() {
    probe.volume = {"", 0, ""};
    probe.space = {{"C:\\", {0, 0, 0}}};
    SetSeed();
  }

  // With the readings above, digit 8 makes ticks / 0.75 the seed.
  void SetSeed() { probe.SetTicks({92'592, 8}); }

  // Makes the seed raise fault 11: digit 6 divides by the volume figure, which is 0.
  void SetImpossibleSeed() { probe.SetTicks({1000, 6}); }

  void SetRandom(std::string_view bytes) { provider.SetRandomBytes(BytesOf(bytes)); }

  // Checks that the operation cleared the record before anything else, and then wrote only this
  // failure.
  void ExpectClearAndThen(const CallJournal::Entries& failure) const {
    ASSERT_FALSE(journal.All().empty());
    EXPECT_EQ(journal.All().front(), Call("Clear"));
    EXPECT_EQ(FailureWritesIn(journal), failure);
  }
};

}  // namespace latchkey::test
