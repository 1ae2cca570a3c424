// The service object must wipe its secrets before it frees memory.
#include <gtest/gtest.h>

#include "tests/support/freed_memory.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

class NoSecretsLeftTest : public WatchedService {
 protected:
  NoSecretsLeftTest() { provider.LeaveDataOut(); }

  // The number of blocks freed by the operation that hold the secret.
  template <class Operation>
  std::size_t BlocksLeftBy(Operation&& operation) {
    const FreedMemory freed(secret);
    operation();
    return freed.BlocksWithSecret();
  }

  const Bytes secret = BytesOf("a secret of more than sixteen letters");
};

TEST_F(NoSecretsLeftTest, ThePasswordIsWipedByTheCiphers) {
  ByteArray password = ArrayOf(secret);
  api.Password(password);
  api.InputData(ArrayOf("some data"));
  EXPECT_EQ(BlocksLeftBy([this] { EXPECT_TRUE(api.Encrypt(1, 1)); }), 0U);
  EXPECT_EQ(BlocksLeftBy([this] { EXPECT_TRUE(api.Decrypt(1, 1)); }), 0U);
}

TEST_F(NoSecretsLeftTest, ThePasswordIsWipedByCreateHash) {
  ByteArray password = ArrayOf(secret);
  api.Password(password);
  EXPECT_EQ(BlocksLeftBy([this] { EXPECT_NE(api.CreateHash(u"abc", 1, true, true), u""); }), 0U);
  provider.FailAt("CryptHashData", 1);
  EXPECT_EQ(BlocksLeftBy([this] { EXPECT_EQ(api.CreateHash(u"abc", 1, true, true), u""); }), 0U);
}

TEST_F(NoSecretsLeftTest, TheDigestIsWipedByCreateHash) {
  provider.SetDigest(Bytes(secret.begin(), secret.begin() + 16));
  const Bytes digest(secret.begin(), secret.begin() + 16);
  const FreedMemory freed(digest);
  EXPECT_NE(api.CreateHash(u"abc", 1, true), u"");
  EXPECT_NE(api.CreateHash(u"abc", 1), u"");
  EXPECT_EQ(freed.BlocksWithSecret(), 0U);
}

TEST_F(NoSecretsLeftTest, PlainDataIsWipedByTheCiphers) {
  api.InputData(ArrayOf(secret));
  EXPECT_EQ(BlocksLeftBy([this] { EXPECT_TRUE(api.Encrypt(1, 1)); }), 0U);
  api.InputData(api.OutputData());
  EXPECT_EQ(BlocksLeftBy([this] { EXPECT_TRUE(api.Decrypt(1, 1)); }), 0U);
  EXPECT_EQ(DataOf(api.OutputData()), secret);
  EXPECT_EQ(BlocksLeftBy([this] { EXPECT_FALSE(api.Decrypt(0, 1)); }), 0U);
}

TEST_F(NoSecretsLeftTest, ReplacedPropertyValuesAreWiped) {
  ByteArray first = ArrayOf(secret);
  ByteArray second = ArrayOf("another password");
  const ByteArray data = ArrayOf(secret);
  const ByteArray none = ArrayOf("");
  EXPECT_EQ(BlocksLeftBy([&] {
              api.Password(first);
              api.Password(second);
              api.InputData(data);
              api.InputData(none);
            }),
            0U);
}

TEST_F(NoSecretsLeftTest, DestroyingTheObjectWipesItsSecrets) {
  ByteArray password = ArrayOf(secret);
  const ByteArray data = ArrayOf(secret);
  EXPECT_EQ(BlocksLeftBy([&] {
              clsCryptoAPI ended;
              ended.Password(password);
              ended.InputData(data);
            }),
            0U);
}

}  // namespace
}  // namespace latchkey::test
