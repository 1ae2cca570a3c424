// The mapping of callers' numbers to the provider's algorithms.
#include "crypto/algorithms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "crypto/crypto_state.h"
#include "tests/support/cipher_direction.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

constexpr std::array<std::int16_t, 5> kUnknownHashes{0, 5, -1, 32767, -32768};
constexpr std::array<std::int16_t, 5> kUnknownCiphers{0, 6, -1, 32767, -32768};
constexpr std::array<std::int16_t, 2> kEnhancedCiphers{4, 5};

struct HashRow {
  std::int16_t number;
  std::uint32_t algorithm;
  int length;
};

constexpr std::array<HashRow, 4> kHashRows{
    {{1, 0x8003, 16}, {2, 0x8002, 16}, {3, 0x8001, 16}, {4, 0x8004, 20}}};

struct CipherRow {
  std::int16_t number;
  std::uint32_t algorithm;
  bool needsEnhanced;
};

constexpr std::array<CipherRow, 5> kCipherRows{{{1, 0x6801, false},
                                                {2, 0x6602, false},
                                                {3, 0x6601, false},
                                                {4, 0x6603, true},
                                                {5, 0x6609, true}}};

using AlgorithmsTest = WatchedServiceOnPlainProvider;

TEST_F(AlgorithmsTest, CreateHashMapsTheHashNumbers) {
  for (const HashRow& row : kHashRows) {
    journal.Clear();
    static_cast<void>(api.CreateHash(u"abc", row.number));
    EXPECT_THAT(journal.Named({"CryptCreateHash", "CryptGetHashParam"}),
                ElementsAre(calls::CreateHash(row.algorithm).Makes(HashNo(row.number)),
                            calls::GetDigest(row.number, row.length)));
  }
}

TEST_F(AlgorithmsTest, TheCiphersMapTheHashNumbers) {
  int made = 0;
  for (const DirectionRow& direction : {kEncryptRow, kDecryptRow}) {
    for (const HashRow& row : kHashRows) {
      journal.Clear();
      EXPECT_TRUE((api.*direction.operation)(row.number, 1));
      EXPECT_THAT(journal.Named({"CryptCreateHash"}),
                  ElementsAre(calls::CreateHash(row.algorithm).Makes(HashNo(++made))));
    }
  }
}

TEST_F(AlgorithmsTest, AnUnknownHashNumberGivesNoAlgorithm) {
  for (const std::int16_t number : kUnknownHashes) {
    const HashAlgorithm found = FindHashAlgorithm(number);
    EXPECT_EQ(found.id, 0U);
    EXPECT_EQ(found.length, 0);
  }
}

TEST_F(AlgorithmsTest, AnUnknownHashNumberIsNotRecordedByTheMapping) {
  LeaveEarlierFailure();
  static_cast<void>(api.CreateHash(u"abc", 5));
  EXPECT_THAT(journal.Named({"CryptCreateHash"}),
              ElementsAre(calls::CreateHash(0).Makes(HashNo(1))));
  EXPECT_EQ(FailureWritesIn(journal), CallJournal::Entries());
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(AlgorithmsTest, EnhancedSetHasAllCiphers) {
  int made = 0;
  api.EnhancedProvider(true);
  for (const CipherRow& row : kCipherRows) {
    journal.Clear();
    EXPECT_TRUE(api.Encrypt(1, row.number));
    ++made;
    EXPECT_THAT(journal.Named({"CryptDeriveKey"}),
                ElementsAre(calls::DeriveKey(row.algorithm, made).Makes(KeyNo(made))));
  }
}

TEST_F(AlgorithmsTest, BaseSetHasThreeCiphers) {
  int made = 0;
  for (const CipherRow& row : kCipherRows) {
    journal.Clear();
    EXPECT_EQ(api.Encrypt(1, row.number), !row.needsEnhanced);
    if (row.needsEnhanced) {
      EXPECT_EQ(journal.Count("CryptDeriveKey"), 0U);
    } else {
      ++made;
      EXPECT_THAT(journal.Named({"CryptDeriveKey"}),
                  ElementsAre(calls::DeriveKey(row.algorithm, made).Makes(KeyNo(made))));
    }
  }
}

TEST_F(AlgorithmsTest, TheFlagChoosesTheSetWithAnyOpenProvider) {
  EXPECT_TRUE(api.Encrypt(1, 1));
  api.EnhancedProvider(true);
  EXPECT_TRUE(api.Encrypt(1, 4));
  EXPECT_TRUE(api.Decrypt(1, 5));
  api.EnhancedProvider(false);
  EXPECT_FALSE(api.Encrypt(1, 4));
  EXPECT_FALSE(api.Decrypt(1, 5));
}

TEST_F(AlgorithmsTest, ABaseProviderInUseCannotMakeAnEnhancedKey) {
  ScriptedProvider real(journal);
  ThisThreadCrypto().provider = &real;
  clsCryptoAPI mixed;
  mixed.InputData(ArrayOf("some data"));
  EXPECT_TRUE(mixed.Encrypt(1, 2));
  mixed.EnhancedProvider(true);
  for (const std::int16_t cipher : kEnhancedCiphers) {
    EXPECT_FALSE(mixed.Encrypt(1, cipher));
    EXPECT_EQ(record.ErrorLocationID(), 723);
    EXPECT_EQ(real.GetLastError(), provider::kErrorBadAlgorithm);
    EXPECT_FALSE(mixed.Decrypt(1, cipher));
    EXPECT_EQ(record.ErrorLocationID(), 716);
  }
}

// Rejected cipher numbers, in both directions and for both sets of ciphers.
class RejectedCipherTest : public AlgorithmsTest,
                           public testing::WithParamInterface<DirectionOnProvider> {
 protected:
  void ExpectRejected(std::int16_t number) {
    const auto& [direction, enhanced] = GetParam();
    api.EnhancedProvider(enhanced);
    LeaveEarlierFailure();
    EXPECT_FALSE((api.*direction.operation)(1, number)) << number;
    const auto& [location, error, text] = direction.cipherType;
    EXPECT_EQ(FailureWritesIn(journal),
              Joined({ApplicationWrites(enhanced ? 725 : 726, 121, "Bad encryption type"),
                      ApplicationWrites(location, error, text)}));
    EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(location, error, text));
    EXPECT_EQ(ElementsOf(api.OutputData()), direction.outputAfterFailure);
    EXPECT_EQ(journal.Count("CryptAcquireContextA"), 0U);
  }
};

TEST_P(RejectedCipherTest, AnUnknownNumberIsReportedByTheMappingAndThenByTheOperation) {
  for (const std::int16_t number : kUnknownCiphers) ExpectRejected(number);
}

TEST_P(RejectedCipherTest, TheBaseSetRejectsTripleDes) {
  if (std::get<1>(GetParam())) {
    api.EnhancedProvider(true);
    EXPECT_TRUE((api.*std::get<0>(GetParam()).operation)(1, 4));
    EXPECT_TRUE((api.*std::get<0>(GetParam()).operation)(1, 5));
  } else {
    ExpectRejected(4);
    ExpectRejected(5);
  }
}

INSTANTIATE_TEST_SUITE_P(InEachDirection, RejectedCipherTest,
                         testing::Combine(testing::Values(kEncryptRow, kDecryptRow),
                                          testing::Bool()),
                         [](const auto& row) { return NameOf(row.param); });

}  // namespace
}  // namespace latchkey::test
