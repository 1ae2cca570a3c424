// Decrypt reverses Encrypt, for every provider, hash and cipher.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/bytes.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

// Enhanced provider, cipher number.
using Combination = std::tuple<bool, std::int16_t>;

constexpr std::int16_t kRc4 = 1;
constexpr std::int16_t kFirstHash = 1;
constexpr std::int16_t kLastHash = 4;

class RoundTripTest : public testing::TestWithParam<Combination> {
 protected:
  RoundTripTest() { api.EnhancedProvider(std::get<0>(GetParam())); }

  [[nodiscard]] static std::int16_t Cipher() { return std::get<1>(GetParam()); }

  Bytes Encrypted(const Bytes& data) {
    api.InputData(ArrayOf(data));
    EXPECT_TRUE(api.Encrypt(hash, Cipher())) << main.ErrorLocationID();
    return DataOf(api.OutputData());
  }

  Bytes Decrypted(const Bytes& data) {
    api.InputData(ArrayOf(data));
    EXPECT_TRUE(api.Decrypt(hash, Cipher())) << main.ErrorLocationID();
    return DataOf(api.OutputData());
  }

  static bool EndsInASpace(const Bytes& data) { return !data.empty() && data.back() == ' '; }

  // Data of that size that ends in a space neither plain nor encrypted, since such a space would be
  // lost.
  Bytes DataOfSize(std::size_t size) {
    Bytes data = SampleBytes(size);
    for (int tries = 0; tries < 256; ++tries, ++data.back()) {
      if (!EndsInASpace(data) && !EndsInASpace(Encrypted(data))) return data;
    }
    ADD_FAILURE() << "no such data";
    return data;
  }

  ModuleScope scope;
  clsMain main;
  clsCryptoAPI api;
  std::int16_t hash = kFirstHash;
};

TEST_P(RoundTripTest, DecryptReturnsDataOfEverySize) {
  ByteArray password = ArrayOf("correct horse");
  api.Password(password);
  for (; hash <= kLastHash; ++hash) {
    for (std::size_t size = Cipher() == kRc4 ? 1 : 4; size <= 40; ++size) {
      const Bytes data = DataOfSize(size);
      EXPECT_EQ(Decrypted(Encrypted(data)), data) << hash << ", " << size;
    }
  }
}

TEST_P(RoundTripTest, DecryptReturnsLargeData) {
  const Bytes data = DataOfSize(1'000'001);
  EXPECT_EQ(Decrypted(Encrypted(data)), data);
}

TEST_P(RoundTripTest, WorksWithTheDefaultPasswordInAnotherObject) {
  for (; hash <= kLastHash; ++hash) {
    const Bytes data = DataOfSize(20);
    const Bytes encrypted = Encrypted(data);
    clsCryptoAPI other;
    other.EnhancedProvider(std::get<0>(GetParam()));
    other.InputData(ArrayOf(encrypted));
    EXPECT_TRUE(other.Decrypt(hash, Cipher()));
    EXPECT_EQ(DataOf(other.OutputData()), data) << hash;
  }
}

TEST_P(RoundTripTest, WorksWithoutAPassword) {
  api.UseDefaultPWD(false);
  for (; hash <= kLastHash; ++hash) {
    const Bytes data = DataOfSize(20);
    EXPECT_EQ(Decrypted(Encrypted(data)), data) << hash;
  }
}

std::string CipherName(const testing::TestParamInfo<Combination>& row) {
  static constexpr std::array kNames{"Rc4", "Rc2", "Des", "TripleDes", "TwoKeyTripleDes"};
  return kNames.at(static_cast<std::size_t>(std::get<1>(row.param) - 1));
}

INSTANTIATE_TEST_SUITE_P(BaseProvider, RoundTripTest,
                         testing::Combine(testing::Values(false),
                                          testing::Values<std::int16_t>(1, 2, 3)),
                         CipherName);
INSTANTIATE_TEST_SUITE_P(EnhancedProvider, RoundTripTest,
                         testing::Combine(testing::Values(true),
                                          testing::Values<std::int16_t>(1, 2, 3, 4, 5)),
                         CipherName);

}  // namespace
}  // namespace latchkey::test
