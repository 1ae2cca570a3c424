// Single calls of the platform's own provider, which must behave the same on Windows (CryptoAPI)
// and on Linux.
#include <array>
#include <optional>

#include "tests/provider/provider_calls_test.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in its interface

class ProviderTest : public ProviderCallsTest {
 protected:
  std::uint32_t Acquire(const char* name, std::uint32_t flags, HCRYPTPROV* handle) {
    return ErrorOf(provider.CryptAcquireContextA(handle, "", name, kProviderTypeRsaFull, flags));
  }
};

TEST_F(ProviderTest, AnUnknownProviderNameIsRefusedAndTheHandleUnchanged) {
  HCRYPTPROV handle = kUntouched;
  EXPECT_EQ(Acquire("No Such Provider", kVerifyContext, &handle), kErrorKeysetNotDefined);
  EXPECT_EQ(handle, kUntouched);
}

TEST_F(ProviderTest, AProviderIsOfTheTypeRsaFull) {
  HCRYPTPROV handle = kUntouched;
  EXPECT_EQ(ErrorOf(provider.CryptAcquireContextA(&handle, "", kBaseProviderName,
                                                  kProviderTypeRsaFull + 1, kVerifyContext)),
            kErrorProviderTypeMismatch);
  EXPECT_EQ(handle, kUntouched);
}

TEST_F(ProviderTest, TheDefaultProviderHasTheCiphersOfTheEnhancedOne) {
  ProviderSession session("");
  EXPECT_NO_THROW(static_cast<void>(session.KeyOf(kAlgorithm3Des, kAlgorithmMd5, kPassword)));
  const Bytes data(24, 7);
  EXPECT_EQ(Encrypt(session.KeyOf(kAlgorithmRc4, kAlgorithmMd5, kPassword), true, data, 24),
            Encrypt(enhanced.KeyOf(kAlgorithmRc4, kAlgorithmMd5, kPassword), true, data, 24));
}

TEST_F(ProviderTest, TheDefaultKeySetIsMadeOnceAndFoundUntilItIsDeleted) {
  HCRYPTPROV handle = 0;
  static_cast<void>(
      Acquire("", kDeleteKeySet, &handle));  // remove the leftover of an interrupted run
  EXPECT_EQ(Acquire("", kDeleteKeySet, &handle), kErrorBadKeySet);

  EXPECT_EQ(Acquire("", kNewKeySet, &handle), 0U);
  EXPECT_EQ(Acquire("", kNewKeySet, &handle), kErrorExists);
  EXPECT_TRUE(provider.CryptReleaseContext(handle, 0));
  EXPECT_EQ(Acquire("", kNewKeySet, &handle), kErrorExists);

  EXPECT_EQ(Acquire("", kDeleteKeySet, &handle), 0U);
  EXPECT_EQ(Acquire("", kNewKeySet, &handle), 0U);
  EXPECT_TRUE(provider.CryptReleaseContext(handle, 0));
  EXPECT_EQ(Acquire("", kDeleteKeySet, &handle), 0U);
}

TEST_F(ProviderTest, AReleasedProviderIsUnknown) {
  HCRYPTPROV handle = 0;
  ASSERT_EQ(Acquire(kBaseProviderName, kVerifyContext, &handle), 0U);
  ASSERT_TRUE(provider.CryptReleaseContext(handle, 0));

  EXPECT_EQ(ErrorOf(provider.CryptReleaseContext(handle, 0)), kErrorInvalidParameter);
  std::uint8_t byte = 0;
  EXPECT_EQ(ErrorOf(provider.CryptGenRandom(handle, 1, &byte)), kErrorInvalidParameter);
  HCRYPTHASH hash = kUntouched;
  EXPECT_EQ(ErrorOf(provider.CryptCreateHash(handle, kAlgorithmMd5, 0, 0, &hash)),
            kErrorInvalidParameter);
  EXPECT_EQ(hash, kUntouched);
}

TEST_F(ProviderTest, HashesAndKeysEndWithTheirProvider) {
  std::optional<ProviderSession> session(std::in_place, kEnhancedProviderName);
  const HCRYPTHASH hash = session->HashOf(kAlgorithmMd5, kPassword);
  const HCRYPTKEY key = session->KeyOf(kAlgorithmDes, kAlgorithmMd5, kPassword);
  session.reset();

  EXPECT_EQ(AddTo(hash, kPassword), kErrorInvalidParameter);
  EXPECT_EQ(Encrypt(key, true, Bytes(8), 16).error, kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(provider.CryptDestroyHash(hash)), kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(provider.CryptDestroyKey(key)), kErrorInvalidParameter);
}

TEST_F(ProviderTest, AZeroHandleIsInvalid) {
  EXPECT_EQ(ErrorOf(provider.CryptReleaseContext(0, 0)), kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(provider.CryptDestroyHash(0)), kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(provider.CryptDestroyKey(0)), kErrorInvalidParameter);
  EXPECT_EQ(AddTo(0, kPassword), kErrorInvalidParameter);
  EXPECT_EQ(Encrypt(0, true, Bytes(8), 16).error, kErrorInvalidParameter);
  EXPECT_EQ(Decrypt(0, true, Bytes(8)).error, kErrorInvalidParameter);
  EXPECT_EQ(Decrypt(0, true, {}).error, kErrorInvalidParameter);
}

TEST_F(ProviderTest, AHandleOfTheWrongKindIsInvalid) {
  const HCRYPTHASH hash = enhanced.HashOf(kAlgorithmMd5, kPassword);
  const HCRYPTKEY key = enhanced.KeyOf(kAlgorithmDes, kAlgorithmMd5, kPassword);
  EXPECT_EQ(ErrorOf(provider.CryptDestroyKey(hash)), kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(provider.CryptDestroyHash(key)), kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(provider.CryptReleaseContext(key, 0)), kErrorInvalidParameter);
  EXPECT_EQ(AddTo(key, kPassword), kErrorInvalidParameter);
  EXPECT_EQ(Encrypt(hash, true, Bytes(8), 16).error, kErrorInvalidParameter);
  EXPECT_EQ(Decrypt(enhanced.Handle(), true, Bytes(8)).error, kErrorInvalidParameter);
}

TEST_F(ProviderTest, DestroyedHashesAndKeysAreUnknown) {
  const HCRYPTHASH hash = enhanced.HashOf(kAlgorithmMd5, kPassword);
  const HCRYPTKEY key = enhanced.KeyOf(kAlgorithmDes, kAlgorithmMd5, kPassword);
  EXPECT_TRUE(provider.CryptDestroyHash(hash));
  EXPECT_TRUE(provider.CryptDestroyKey(key));
  EXPECT_EQ(ErrorOf(provider.CryptDestroyHash(hash)), kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf(provider.CryptDestroyKey(key)), kErrorInvalidParameter);
  EXPECT_EQ(AddTo(hash, kPassword), kErrorInvalidParameter);
  EXPECT_EQ(Decrypt(key, true, Bytes(8)).error, kErrorInvalidParameter);
}

TEST_F(ProviderTest, RandomBytesFillTheBufferAndNoMore) {
  std::array<std::uint8_t, 66> first{};
  std::array<std::uint8_t, 66> second{};
  EXPECT_EQ(ErrorOf(provider.CryptGenRandom(base.Handle(), 64, first.data() + 1)), 0U);
  EXPECT_EQ(ErrorOf(provider.CryptGenRandom(base.Handle(), 64, second.data() + 1)), 0U);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.front() | first.back() | second.front() | second.back(), 0);
}

TEST_F(ProviderTest, ZeroRandomBytesSucceed) {
  std::uint8_t byte = 7;
  EXPECT_EQ(ErrorOf(provider.CryptGenRandom(base.Handle(), 0, &byte)), 0U);
  EXPECT_EQ(ErrorOf(provider.CryptGenRandom(base.Handle(), 0, nullptr)), 0U);
  EXPECT_EQ(byte, 7);
}

}  // namespace
}  // namespace latchkey::test
