// Random data, salts, random passwords and conversions must wipe their secrets before they free
// memory.
#include <gtest/gtest.h>

#include <cstdint>
#include <span>

#include "crypto/crypto_state.h"
#include "tests/support/freed_memory.h"
#include "tests/support/random_service.h"

namespace latchkey::test {
namespace {

class NoRandomDataLeftTest : public RandomService {
 protected:
  // The number of blocks freed by the operation that hold the secret, as bytes or as text. The
  // caller owns the result, which is freed after the search.
  template <class Operation>
  std::size_t BlocksLeftBy(Operation&& operation) {
    std::size_t blocks = 0;
    for (const Bytes& form : {secret, AsText(secret)}) {
      SetSeed();
      const FreedMemory freed(form);
      [[maybe_unused]] const auto result = operation();
      blocks += freed.BlocksWithSecret();
    }
    return blocks;
  }

  Bytes secret = BytesOf("a secret of more than sixteen letters");
  const std::int32_t length = static_cast<std::int32_t>(secret.size());
  const Text text{secret.begin(), secret.end()};
};

TEST_F(NoRandomDataLeftTest, RandomDataIsWiped) {
  provider.SetRandomBytes(secret);
  EXPECT_EQ(BlocksLeftBy([this] { return api.CreateRandom(length, true); }), 0U);
  EXPECT_EQ(BlocksLeftBy([this] { return api.CreateRandom(length); }), 0U);
  EXPECT_EQ(BlocksLeftBy([this] { return api.CreateRandom(length, false, true); }), 0U);
}

TEST_F(NoRandomDataLeftTest, ASaltOfRandomCharactersIsWiped) {
  provider.SetRandomBytes(secret);
  EXPECT_EQ(BlocksLeftBy([this] { return api.CreateSaltValue(length); }), 0U);
}

// With the same generator state and seed readings, a salt has the letters of a random password.
TEST_F(NoRandomDataLeftTest, TheLettersOfARandomPasswordAreWiped) {
  scope.Services().fillRandom = [](std::span<std::uint8_t>) noexcept { return true; };
  ThisThreadCrypto().generatorState = {1, 2};
  const Text letters = api.CreateSaltValue(20, true);
  secret.assign(letters.begin(), letters.end());
  api.UseDefaultPWD(false);
  const auto hash = [this] {
    ThisThreadCrypto().generatorState = {1, 2};
    SetSeed();
    return api.CreateHash(u"", 1, true, true);
  };
  static_cast<void>(hash());
  ASSERT_EQ(journal.Named({"CryptHashData"}).back().arguments.at(1), Call::Argument(secret));
  provider.LeaveDataOut();
  EXPECT_EQ(BlocksLeftBy(hash), 0U);
}

TEST_F(NoRandomDataLeftTest, ConversionsAreWiped) {
  const ByteArray array = ArrayOf(secret);
  const Text hex = api.ConvertStringToHex(text);
  EXPECT_EQ(BlocksLeftBy([&] { return api.ByteArrayToString(array); }), 0U);
  EXPECT_EQ(BlocksLeftBy([&] { return api.StringToByteArray(TextView(text)); }), 0U);
  EXPECT_EQ(BlocksLeftBy([&] { return api.ConvertStringToHex(text); }), 0U);
  EXPECT_EQ(BlocksLeftBy([&] { return api.ConvertStringFromHex(hex); }), 0U);
}

TEST_F(NoRandomDataLeftTest, TheSearchFindsWhatIsNotWiped) {
  EXPECT_EQ(BlocksLeftBy([this] {
              { const std::vector<std::uint8_t> unwiped(secret.begin(), secret.end()); }
              return 0;
            }),
            1U);
}

}  // namespace
}  // namespace latchkey::test
