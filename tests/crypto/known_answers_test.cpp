// Known answers through the service object.
#include <gtest/gtest.h>

#include <map>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/bytes.h"
#include "tests/support/call_journal.h"
#include "tests/support/module_scope.h"
#include "tests/support/vector_file.h"

namespace latchkey::test {
namespace {

class KnownAnswerTest : public testing::Test {
 protected:
  // Both directions of one line: provider, hash, cipher, password, plaintext, ciphertext, source.
  void CheckEncryption(const VectorLine& line) {
    SCOPED_TRACE(line.place);
    const auto hash = static_cast<std::int16_t>(NumberOfField(line.fields[1]));
    const auto cipher = static_cast<std::int16_t>(NumberOfField(line.fields[2]));
    const Bytes plaintext = BytesOfField(line.fields[4]);
    const Bytes ciphertext = BytesOfField(line.fields[5]);
    clsCryptoAPI api;
    api.EnhancedProvider(line.fields[0] == "1");
    SetPassword(api, BytesOfField(line.fields[3]));

    api.InputData(ArrayOf(plaintext));
    EXPECT_TRUE(api.Encrypt(hash, cipher));
    EXPECT_EQ(DataOf(api.OutputData()), ciphertext);

    api.InputData(ArrayOf(ciphertext));
    if (ciphertext.back() == ' ') {
      // InputData removes trailing spaces, so this ciphertext is damaged.
      ++cutOff;
      EXPECT_FALSE(api.Decrypt(hash, cipher));
      EXPECT_EQ(main.ErrorLocationID(), 717);
    } else {
      EXPECT_TRUE(api.Decrypt(hash, cipher));
      EXPECT_EQ(DataOf(api.OutputData()), plaintext);
    }
  }

  static void SetPassword(clsCryptoAPI& api, const Bytes& password) {
    api.UseDefaultPWD(false);
    ByteArray array = ArrayOf(password);
    api.Password(array);
  }

  ModuleScope scope;
  clsMain main;
  int cutOff = 0;
};

TEST_F(KnownAnswerTest, MatchesMeasuredCiphertexts) {
  for (const VectorLine& line : ReadVectors("encryption.txt", 7)) CheckEncryption(line);
  EXPECT_EQ(cutOff, 2);
}

TEST_F(KnownAnswerTest, MatchesThePublishedKeyDerivationSample) {
  for (const VectorLine& line : ReadVectors("key_derivation.txt", 7)) CheckEncryption(line);
}

TEST_F(KnownAnswerTest, MatchesPublishedHashValuesWithEitherProvider) {
  const std::map<std::string, std::int16_t> numbers{
      {"MD5", 1}, {"MD4", 2}, {"MD2", 3}, {"SHA1", 4}};
  for (const VectorLine& line : ReadVectors("hashes.txt", 5)) {
    SCOPED_TRACE(line.place);
    const Bytes part = BytesOfField(line.fields[2]);
    Text text;
    for (std::uint32_t i = 0; i < NumberOfField(line.fields[1]); ++i) {
      text.append(part.begin(), part.end());
    }
    for (const bool enhanced : {false, true}) {
      clsCryptoAPI api;
      api.EnhancedProvider(enhanced);
      EXPECT_EQ(Printable(api.CreateHash(text, numbers.at(line.fields[0]), true)), line.fields[3]);
    }
  }
}

}  // namespace
}  // namespace latchkey::test
