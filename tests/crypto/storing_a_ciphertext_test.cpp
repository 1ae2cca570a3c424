// The calls by which the samples store a ciphertext and read it back: every text is restored, and
// texts stored without an end mark are read as before the mark was introduced.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <string>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/bytes.h"
#include "tests/support/module_scope.h"
#include "tests/support/test_seed.h"

namespace latchkey::test {
namespace {

constexpr int kInputs = 100'000;
constexpr std::int16_t kRc4 = 1;
constexpr TextView kEndMark = u"~lkend~";
constexpr std::size_t kEndMarkLength = 8;  // including its digit

// Ciphertexts as hexadecimal text: the VBScript sample, the script of README.md, decrypt_file.
struct AsHexText {
  using Stored = Text;
  static Stored Keep(const clsCryptoAPI& api) {
    return api.ConvertStringToHex(api.ByteArrayToString(api.OutputData()));
  }
  static void Take(clsCryptoAPI& api, const Stored& stored) {
    const Text ciphertext = api.ConvertStringFromHex(stored);
    api.InputData(api.StringToByteArray(TextView(ciphertext)));
  }
  // Wine's VBScript cannot read the bounds of a byte array.
  static std::size_t LengthOfCiphertext(const clsCryptoAPI&, std::size_t plain, bool block) {
    return block ? (plain / 8 + 1) * 8 : plain;
  }
};

// Ciphertexts as byte arrays with their last element: the samples in VBA, C# and C++.
struct AsByteArray {
  using Stored = ByteArray;
  static Stored Keep(const clsCryptoAPI& api) { return api.OutputData(); }
  static void Take(clsCryptoAPI& api, const Stored& stored) { api.InputData(stored); }
  static std::size_t LengthOfCiphertext(const clsCryptoAPI& api, std::size_t, bool) {
    return static_cast<std::size_t>(api.OutputData().UpperBound());
  }
};

bool HasEndMark(TextView text) {
  return text.size() >= kEndMarkLength &&
         text.substr(text.size() - kEndMarkLength).starts_with(kEndMark) &&
         TextView(u"0123456789").find(text.back()) != TextView::npos;
}

// Whether AnyText ended the text with a complete mark. Only such a mark is removed by mistake.
bool EndsWithAChosenMark(TextView text) {
  return text.ends_with(u"~lkend~0") || text.ends_with(u"~lkend~9 ");
}

template <class Form>
class StoringACiphertextTest : public testing::Test {
 protected:
  StoringACiphertextTest() { enhanced.EnhancedProvider(true); }

  std::size_t Below(std::size_t bound) { return random() % bound; }

  // Chooses a new object, hash, cipher and password.
  void ChooseSettings() {
    const bool useEnhanced = Below(2) == 1;
    api = useEnhanced ? &enhanced : &base;
    hash = static_cast<std::int16_t>(1 + Below(4));
    cipher = static_cast<std::int16_t>(1 + Below(useEnhanced ? 5 : 3));
    ByteArray password = ArrayOf("password " + std::to_string(Below(1000)));
    api->Password(password);
  }

  // Any characters of the code page, often with an end that may be damaged.
  Text AnyText() {
    static const std::array<std::string, 9> ends{
        "", "", " ", "    ", std::string(1, '\0'), "~lkend~0", "~lkend~", "end!", "~lkend~9 "};
    Bytes bytes(Below(65));
    std::ranges::generate(bytes, [this] { return static_cast<std::uint8_t>(Below(256)); });
    for (const char end : ends[Below(ends.size())]) bytes.push_back(static_cast<std::uint8_t>(end));
    bytes.push_back('x');  // keeps spaces before it
    Text text = api->ByteArrayToString(ArrayOf(bytes));
    text.pop_back();
    return text;
  }

  bool Encrypt(TextView text) {
    api->InputData(api->StringToByteArray(text));
    return api->Encrypt(hash, cipher);
  }

  // Whether the ciphertext survives the conversion to text and back.
  [[nodiscard]] bool CanBeStored(const Text& plain) const {
    return api->ByteArrayToString(api->OutputData()).size() ==
           Form::LengthOfCiphertext(*api, plain.size(), cipher != kRc4);
  }

  std::optional<typename Form::Stored> Store(const Text& text) {
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
      const Text marked = text + Text(kEndMark) + digit;
      if (api->ByteArrayToString(api->StringToByteArray(TextView(marked))) != marked) break;
      if (!Encrypt(marked)) break;
      if (CanBeStored(marked)) return Form::Keep(*api);
      ++digitsPassed;
    }
    return std::nullopt;
  }

  // Stores without a mark, as the samples did before.
  std::optional<typename Form::Stored> StoreUnmarked(const Text& text) {
    if (!Encrypt(text)) return std::nullopt;
    return Form::Keep(*api);
  }

  std::optional<Text> ReadAsBefore(const typename Form::Stored& stored) {
    Form::Take(*api, stored);
    if (!api->Decrypt(hash, cipher)) return std::nullopt;
    return api->ByteArrayToString(api->OutputData());
  }

  std::optional<Text> Read(const typename Form::Stored& stored) {
    std::optional<Text> text = ReadAsBefore(stored);
    if (text && HasEndMark(*text)) text->resize(text->size() - kEndMarkLength);
    return text;
  }

  [[nodiscard]] std::string Described(const Text& text) const {
    Bytes codes = DataOf(api->StringToByteArray(TextView(text)));
    return Hex(codes) + " hash " + std::to_string(hash) + " cipher " + std::to_string(cipher);
  }

  ModuleScope scope;
  clsMain main;
  clsCryptoAPI base;
  clsCryptoAPI enhanced;
  clsCryptoAPI* api = &base;
  std::int16_t hash = 0;
  std::int16_t cipher = 0;
  int digitsPassed = 0;
  std::mt19937 random = Seeded<std::mt19937>(TestSeed(std::random_device{}()));
};

using Forms = testing::Types<AsHexText, AsByteArray>;
TYPED_TEST_SUITE(StoringACiphertextTest, Forms);

TYPED_TEST(StoringACiphertextTest, EveryTextSurvivesStoring) {
  for (int input = 0; input < kInputs; ++input) {
    this->ChooseSettings();
    const Text text = this->AnyText();
    const auto stored = this->Store(text);
    ASSERT_TRUE(stored) << this->Described(text);
    ASSERT_EQ(this->Read(*stored), text) << this->Described(text);
  }
  EXPECT_GT(this->digitsPassed, 0);  // about one ciphertext in 256
}

TYPED_TEST(StoringACiphertextTest, ReadsTextWithoutAMarkAsBefore) {
  int whole = 0;
  for (int input = 0; input < kInputs; ++input) {
    this->ChooseSettings();
    const Text text = this->AnyText();
    const auto stored = this->StoreUnmarked(text);
    if (!stored || EndsWithAChosenMark(text)) continue;
    const bool canBeStored = !text.ends_with(u' ') && this->CanBeStored(text);
    const auto read = this->Read(*stored);
    ASSERT_EQ(read, this->ReadAsBefore(*stored)) << this->Described(text);
    if (canBeStored) {
      ASSERT_EQ(read, text) << this->Described(text);
    }
    whole += canBeStored ? 1 : 0;
  }
  EXPECT_GT(whole, kInputs / 4);
}

}  // namespace
}  // namespace latchkey::test
