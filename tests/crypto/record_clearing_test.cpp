// How often the operations of the service object clear the record, and when.
#include <gtest/gtest.h>

#include "tests/support/cipher_direction.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

class RecordClearingTest : public WatchedServiceOnPlainProvider {
 protected:
  // The number of times that the operation clears a record with an earlier failure. The first time
  // must be before anything else.
  template <class Operation>
  std::size_t ClearsOf(Operation&& operation) {
    LeaveEarlierFailure();
    static_cast<void>(operation());
    EXPECT_EQ(journal.All().at(0), Call("Clear"));
    return journal.Count("Clear");
  }
};

TEST_F(RecordClearingTest, TheCiphersClearInTheShellTheBodyAndTheMapping) {
  for (const DirectionRow& direction : {kEncryptRow, kDecryptRow}) {
    const auto run = [&](std::int16_t hash, std::int16_t cipher) {
      return ClearsOf([&] { return (api.*direction.operation)(hash, cipher); });
    };
    EXPECT_EQ(run(1, 1), 3U);
    EXPECT_EQ(run(1, 99), 3U);
    EXPECT_EQ(run(99, 1), 2U);
  }
}

TEST_F(RecordClearingTest, CreateHashClearsOnce) {
  EXPECT_EQ(ClearsOf([this] { return api.CreateHash(u"abc", 1); }), 1U);
  EXPECT_EQ(ClearsOf([this] { return api.CreateHash(u"abc", 1, true, true); }), 1U);
}

TEST_F(RecordClearingTest, CreateHashWithRandomLettersClearsForTheSaltToo) {
  api.UseDefaultPWD(false);
  EXPECT_EQ(ClearsOf([this] { return api.CreateHash(u"abc", 1, true, true); }), 2U);
}

TEST_F(RecordClearingTest, SuccessFollowsFailureWithAClearRecord) {
  EXPECT_FALSE(api.Encrypt(1, 99));
  EXPECT_TRUE(record.ErrorExists());
  EXPECT_TRUE(api.Encrypt(1, 1));
  EXPECT_EQ(ValuesOf(record), (RecordValues{719, 2, 121, "", 0, "", false, 0}));
}

}  // namespace
}  // namespace latchkey::test
