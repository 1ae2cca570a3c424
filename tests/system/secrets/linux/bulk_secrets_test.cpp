// After bulk decryption, with the kernels of LATCHKEY_CPU, memory contains neither the plaintext
// nor the unchained blocks, which are the plaintext with public ciphertext added.
#include "provider/block_size.h"
#include "tests/system/secrets/searched_service.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kBlock = provider::kBlockSize;
constexpr std::size_t kUnchained = kRandom;
constexpr std::int16_t kMd5 = 1;

// Length of the end that is searched for.
constexpr std::size_t kSearched = 1536;

class BulkSecretsTest : public SearchedService {
 protected:
  // The ciphertext of `size` random letters.
  Bytes MakeCiphertext(std::int16_t cipher, std::size_t size) {
    WipedBytes text(size);
    for (std::size_t i = 0; i < size; i += Secret::kMostBytes) {
      const auto part = std::span(text).subspan(i).first(Secret::kMostBytes);
      Secret::Random(part.size()).CopyTo(part);
    }
    Bytes ciphertext = EncryptWithoutTrailingSpace(text, cipher);
    AddEnd(text, ciphertext);
    return ciphertext;
  }

  // The last bytes of the text, and the same before the ciphertext was added.
  void AddEnd(std::span<const std::uint8_t> text, std::span<const std::uint8_t> ciphertext) {
    for (std::size_t at = text.size() - kSearched; at < text.size(); at += Secret::kMostBytes) {
      search.Add(kPlaintext, Secret(text.subspan(at, Secret::kMostBytes)));
      WipedBytes unchained(Secret::kMostBytes);
      for (std::size_t i = 0; i < unchained.size(); ++i) {
        unchained[i] = text[at + i] ^ ciphertext[at + i - kBlock];
      }
      search.Add(kUnchained, Secret(unchained));
    }
  }

  // For every kernel, both sizes end with a partly filled batch that is long enough for the kernel,
  // and the second begins with a whole batch.
  void ExpectNothingLeft(std::int16_t cipher) {
    const SecretSearch passwordAlone = search;
    for (const std::size_t size : {2944U, 4096U + 2944U}) {
      SCOPED_TRACE(size);
      const Bytes ciphertext = MakeCiphertext(cipher, size);
      Expect(kNone, "after encryption");
      {
        clsCryptoAPI object;
        Prepare(object, Secret::Random(8));
        object.InputData(ByteArray::WithTrailingZero(ciphertext));
        EXPECT_TRUE(object.Decrypt(kMd5, cipher));
        Expect({1, 1}, "while the object has its output");
      }
      Expect(kNone, "after the object's end");
      search = passwordAlone;
    }
  }
};

TEST_F(BulkSecretsTest, AfterRc2NothingOfTheTextIsLeft) { ExpectNothingLeft(2); }

TEST_F(BulkSecretsTest, AfterDesNothingOfTheTextIsLeft) { ExpectNothingLeft(3); }

TEST_F(BulkSecretsTest, AfterTripleDesNothingOfTheTextIsLeft) { ExpectNothingLeft(4); }

}  // namespace
}  // namespace latchkey::test
