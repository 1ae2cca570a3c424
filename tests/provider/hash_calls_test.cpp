// Hashes of the platform's own provider, and the keys derived from them.
#include <array>

#include "tests/provider/provider_calls_test.h"
#include "tests/support/freed_memory.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in its interface

class HashCallsTest : public ProviderCallsTest {
 protected:
  // Derives a key from a fresh hash of `algorithm`.
  std::uint32_t Derive(const ProviderSession& session, AlgorithmId cipher, AlgorithmId algorithm) {
    HCRYPTKEY key = 0;
    return ErrorOf(provider.CryptDeriveKey(session.Handle(), cipher,
                                           session.HashOf(algorithm, kPassword), 0, &key));
  }
};

TEST_F(HashCallsTest, AHashNeedsAKnownAlgorithm) {
  for (const AlgorithmId algorithm : {kAlgorithmNone, AlgorithmId{1}, AlgorithmId{0xFFFFFFFF}}) {
    HCRYPTHASH hash = kUntouched;
    EXPECT_EQ(ErrorOf(provider.CryptCreateHash(base.Handle(), algorithm, 0, 0, &hash)),
              kErrorBadAlgorithm);
    EXPECT_EQ(hash, kUntouched);
  }
}

TEST_F(HashCallsTest, HashingNoBytesSucceeds) {
  const HCRYPTHASH hash = base.HashOf(kAlgorithmMd5, kPassword);
  EXPECT_EQ(ErrorOf(provider.CryptHashData(hash, nullptr, 0, 0)), 0U);
  EXPECT_EQ(ValueOf(hash), ValueOf(base.HashOf(kAlgorithmMd5, kPassword)));
}

TEST_F(HashCallsTest, ATooShortBufferForAHashValueReturnsTheNeededLength) {
  const HCRYPTHASH hash = base.HashOf(kAlgorithmSha1, kPassword);
  std::array<std::uint8_t, 19> buffer{};
  std::uint32_t length = buffer.size();
  EXPECT_EQ(
      ErrorOf(provider.CryptGetHashParam(hash, kHashValueParameter, buffer.data(), &length, 0)),
      kErrorMoreData);
  EXPECT_EQ(length, 20U);
  length = 0;
  EXPECT_EQ(ErrorOf(provider.CryptGetHashParam(hash, kHashValueParameter, nullptr, &length, 0)),
            kErrorMoreData);
  EXPECT_EQ(length, 20U);
  EXPECT_EQ(AddTo(hash, kPassword), kErrorBadHashState);
}

TEST_F(HashCallsTest, AHashRefusesDataAfterItsValueWasRead) {
  const HCRYPTHASH hash = base.HashOf(kAlgorithmMd5, kPassword);
  const Bytes value = ValueOf(hash);
  EXPECT_EQ(AddTo(hash, kPassword), kErrorBadHashState);
  EXPECT_EQ(AddTo(hash, {}), kErrorBadHashState);
  EXPECT_EQ(ValueOf(hash), value);
}

TEST_F(HashCallsTest, AHashRefusesDataAfterAKeyWasDerived) {
  const HCRYPTHASH hash = base.HashOf(kAlgorithmMd5, kPassword);
  HCRYPTKEY key = 0;
  ASSERT_TRUE(provider.CryptDeriveKey(base.Handle(), kAlgorithmRc4, hash, 0, &key));
  EXPECT_EQ(AddTo(hash, kPassword), kErrorBadHashState);
  HCRYPTKEY second = 0;
  EXPECT_EQ(ErrorOf(provider.CryptDeriveKey(base.Handle(), kAlgorithmRc4, hash, 0, &second)), 0U);
  EXPECT_EQ(Encrypt(key, true, Bytes(9), 9), Encrypt(second, true, Bytes(9), 9));
}

TEST_F(HashCallsTest, ARefusedDerivationLeavesTheHashOpen) {
  const HCRYPTHASH hash = base.HashOf(kAlgorithmMd5, kPassword);
  HCRYPTKEY key = kUntouched;
  for (const AlgorithmId cipher :
       {kAlgorithmNone, kAlgorithmMd5, kAlgorithm3Des, kAlgorithm3Des112}) {
    EXPECT_EQ(ErrorOf(provider.CryptDeriveKey(base.Handle(), cipher, hash, 0, &key)),
              kErrorBadAlgorithm);
  }
  EXPECT_EQ(key, kUntouched);
  EXPECT_EQ(AddTo(hash, kPassword), 0U);
}

TEST_F(HashCallsTest, EveryHashDerivesAKeyForEveryCipherOfItsProvider) {
  for (const AlgorithmId hash : {kAlgorithmMd2, kAlgorithmMd4, kAlgorithmMd5, kAlgorithmSha1}) {
    for (const AlgorithmId cipher : {kAlgorithmRc4, kAlgorithmRc2, kAlgorithmDes}) {
      EXPECT_EQ(Derive(base, cipher, hash), 0U);
      EXPECT_EQ(Derive(enhanced, cipher, hash), 0U);
    }
    for (const AlgorithmId cipher : {kAlgorithm3Des, kAlgorithm3Des112}) {
      EXPECT_EQ(Derive(enhanced, cipher, hash), 0U);
    }
  }
}

TEST_F(HashCallsTest, TheProviderNamedInTheCallDecidesTheKeyLength) {
  HCRYPTKEY key = 0;
  ASSERT_TRUE(provider.CryptDeriveKey(base.Handle(), kAlgorithmRc4,
                                      enhanced.HashOf(kAlgorithmMd5, kPassword), 0, &key));
  const Bytes data(16, 3);
  const auto under = [&](const ProviderSession& session) {
    return Encrypt(session.KeyOf(kAlgorithmRc4, kAlgorithmMd5, kPassword), true, data, 16);
  };
  EXPECT_EQ(Encrypt(key, true, data, 16), under(base));
  EXPECT_NE(under(base), under(enhanced));
}

// The value is the key under RC4; with 3DES it is also expanded to a longer one.
TEST_F(HashCallsTest, NoFreedBlockHoldsThePasswordOrItsHashValue) {
  const Bytes password = BytesOf("a password of more than one word");
  const Bytes value = ValueOf(enhanced.HashOf(kAlgorithmMd5, password));
  for (const Bytes& secret : {password, value}) {
    const FreedMemory freed(secret);
    for (const AlgorithmId cipher : {kAlgorithmRc4, kAlgorithm3Des, kAlgorithm3Des112}) {
      const HCRYPTKEY key = enhanced.KeyOf(cipher, kAlgorithmMd5, password);
      EXPECT_EQ(Encrypt(key, true, Bytes(8), 16).error, 0U);
      EXPECT_TRUE(provider.CryptDestroyKey(key));
    }
    EXPECT_EQ(freed.BlocksWithSecret(), 0U);
  }
}

}  // namespace
}  // namespace latchkey::test
