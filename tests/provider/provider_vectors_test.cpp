#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tests/support/provider_session.h"
#include "tests/support/raw_rc2.h"
#include "tests/support/vector_file.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in its interface

const std::map<std::string, AlgorithmId> kHashNames{{"MD2", kAlgorithmMd2},
                                                    {"MD4", kAlgorithmMd4},
                                                    {"MD5", kAlgorithmMd5},
                                                    {"SHA1", kAlgorithmSha1}};

const std::map<std::string, AlgorithmId> kHashNumbers{
    {"1", kAlgorithmMd5}, {"2", kAlgorithmMd4}, {"3", kAlgorithmMd2}, {"4", kAlgorithmSha1}};

const std::map<std::string, AlgorithmId> kCipherNumbers{{"1", kAlgorithmRc4},
                                                        {"2", kAlgorithmRc2},
                                                        {"3", kAlgorithmDes},
                                                        {"4", kAlgorithm3Des},
                                                        {"5", kAlgorithm3Des112}};

Bytes Repeated(const Bytes& part, std::uint32_t count) {
  Bytes whole;
  for (std::uint32_t i = 0; i < count; ++i) whole.insert(whole.end(), part.begin(), part.end());
  return whole;
}

class ProviderVectorsTest : public ::testing::Test {
 protected:
  [[nodiscard]] const ProviderSession& Session(const std::string& provider) const {
    return provider == "1" ? enhanced : base;
  }

  // Both directions, under a new key each.
  void CheckEncryption(const VectorLine& line) const {
    SCOPED_TRACE(line.place);
    const auto makeKey = [&] {
      return Session(line.fields[0])
          .KeyOf(kCipherNumbers.at(line.fields[2]), kHashNumbers.at(line.fields[1]),
                 BytesOfField(line.fields[3]));
    };
    const Bytes plaintext = BytesOfField(line.fields[4]);
    const Bytes ciphertext = BytesOfField(line.fields[5]);
    const auto room = static_cast<std::uint32_t>(2 * plaintext.size());
    EXPECT_EQ(Encrypt(makeKey(), true, plaintext, room).data, ciphertext);
    EXPECT_EQ(Decrypt(makeKey(), true, ciphertext).data, plaintext);
  }

  ProviderSession base{kBaseProviderName};
  ProviderSession enhanced{kEnhancedProviderName};
};

TEST_F(ProviderVectorsTest, HashesMatchPublishedValuesInBothProviders) {
  for (const VectorLine& line : ReadVectors("hashes.txt", 5)) {
    SCOPED_TRACE(line.place);
    const Bytes data = Repeated(BytesOfField(line.fields[2]), NumberOfField(line.fields[1]));
    for (const ProviderSession* session : {&base, &enhanced}) {
      EXPECT_EQ(ValueOf(session->HashOf(kHashNames.at(line.fields[0]), data)),
                BytesOfField(line.fields[3]));
    }
  }
}

TEST_F(ProviderVectorsTest, HashValueDoesNotDependOnTheLengthsOfTheParts) {
  for (const VectorLine& line : ReadVectors("hashes.txt", 5)) {
    if (NumberOfField(line.fields[1]) > 100)
      continue;  // a million letters one by one take too long
    SCOPED_TRACE(line.place);
    const Bytes data = Repeated(BytesOfField(line.fields[2]), NumberOfField(line.fields[1]));
    const HCRYPTHASH hash = base.HashOf(kHashNames.at(line.fields[0]), {});
    for (const std::uint8_t& byte : data) {
      ASSERT_TRUE(SystemCryptoProvider().CryptHashData(hash, &byte, 1, 0));
    }
    EXPECT_EQ(ValueOf(hash), BytesOfField(line.fields[3]));
  }
}

TEST_F(ProviderVectorsTest, CiphersMatchMeasuredCiphertexts) {
  for (const VectorLine& line : ReadVectors("encryption.txt", 7)) CheckEncryption(line);
}

TEST_F(ProviderVectorsTest, KeyDerivationMatchesThePublishedSample) {
  for (const VectorLine& line : ReadVectors("key_derivation.txt", 7)) CheckEncryption(line);
}

TEST_F(ProviderVectorsTest, Rc2MatchesPublishedBlocksUnderRawKeys) {
  const KeyLengths lengths = RawRc2KeyLengths();
  int driven = 0;
  for (const VectorLine& line : ReadVectors("rc2.txt", 5)) {
    SCOPED_TRACE(line.place);
    const Bytes key = BytesOfField(line.fields[1]);
    if (key.size() < lengths.least || key.size() > lengths.most) continue;
    ++driven;
    EXPECT_EQ(EncryptRc2Block(key, NumberOfField(line.fields[0]), BytesOfField(line.fields[2])),
              BytesOfField(line.fields[3]));
  }
  EXPECT_GE(driven, 6);
}

}  // namespace
}  // namespace latchkey::test
