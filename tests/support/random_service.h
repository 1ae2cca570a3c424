// The service object where random data, and the seed text offered for it, are the test's.
#pragma once

#include <string_view>

#include "tests/support/watched_service.h"

namespace latchkey::test {

// The fixture of tests of random data. Its provider opens without a platform's.
class RandomService : public WatchedServiceOnPlainProvider {
 protected:
  // What BuildSeedText gives each time, once SetSeed was called for the next operation.
  static constexpr TextView kSeed = u"123456123456";

  RandomService() {
    probe.volume = {"", 0, ""};
    probe.space = {{"C:\\", {0, 0, 0}}};
    SetSeed();
  }

  // With the readings above, digit 8 makes ticks / 0.75 the seed.
  void SetSeed() { probe.SetTicks({92'592, 8}); }

  // A reading that faults with 11: digit 6 divides by the volume figure, which is 0.
  void SetImpossibleSeed() { probe.SetTicks({1000, 6}); }

  void SetRandom(std::string_view bytes) { provider.SetRandomBytes(BytesOf(bytes)); }

  // The operation cleared the record before anything else, and then wrote just this failure.
  void ExpectClearAndThen(const CallJournal::Entries& failure) const {
    ASSERT_FALSE(journal.All().empty());
    EXPECT_EQ(journal.All().front(), Call("Clear"));
    EXPECT_EQ(FailureWritesIn(journal), failure);
  }
};

}  // namespace latchkey::test
