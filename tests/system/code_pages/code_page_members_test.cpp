// The component on the code page of the process, which is that of LATCHKEY_TEST_CODE_PAGE: every
// member that takes or returns text, for every byte and every character.
//
// Random texts have no seed: the probability that a byte value is missing from all of them is below
// 10^-130.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <set>

#include "tests/support/bytes.h"
#include "tests/support/fault_of.h"
#include "tests/support/vector_file.h"
#include "tests/system/code_pages/process_page.h"
#include "tests/system/trust/component.h"

namespace latchkey::test {
namespace {

constexpr std::int16_t kMd5 = 1;
constexpr std::int16_t kRc4 = 1;
constexpr std::int16_t kOverflow = 6;

unsigned Number() {
  const char* const text = std::getenv("LATCHKEY_TEST_CODE_PAGE");
  return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 0;
}

Bytes EveryByte() {
  Bytes bytes;
  for (unsigned byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<std::uint8_t>(byte));
  return bytes;
}

std::string Ascii(const Text& text) { return {text.begin(), text.end()}; }

// A digest without the bytes at its end that text would lose.
std::string WithoutSpaces(std::string hex) {
  while (hex.ends_with("20")) hex.resize(hex.size() - 2);
  return hex;
}

class CodePageMembersTest : public testing::Test {
 protected:
  CodePageMembersTest() {
    api->CreateMain();
    api->CreateService();
    api->EnhancedProvider(true);
    api->UseDefaultPWD(false);
  }

  Text EveryCharacter() { return api->ByteArrayToString(ArrayOf(EveryByte())); }
  Bytes BytesOfText(const Text& text) { return DataOf(api->StringToByteArray(TextView(text))); }
  std::string HexOfText(const Text& text) { return Ascii(api->ConvertStringToHex(text, true)); }
  std::string Md5(const Text& text) {
    return Ascii(api->CreateHash(text, kMd5, true, false, false));
  }

  void SetPassword(const Bytes& password) {
    ByteArray array = ArrayOf(password);
    api->Password(array);
  }
  Bytes Encrypted(const Bytes& data, std::int16_t hash, std::int16_t cipher) {
    api->InputData(ArrayOf(data));
    return api->Encrypt(hash, cipher) ? DataOf(api->OutputData()) : Bytes();
  }
  Bytes Decrypted(const Bytes& data, std::int16_t hash, std::int16_t cipher) {
    api->InputData(ArrayOf(data));
    return api->Decrypt(hash, cipher) ? DataOf(api->OutputData()) : Bytes();
  }
  bool Passes(const VectorLine& line);

  // The code of a character for clients.
  std::uint16_t CodeOf(char16_t character, std::uint8_t lowByte) {
    const Text text(1, character);
    const std::int32_t fault = FaultOf([&] { return api->StringToByteArray(TextView(text)); });
    if (fault == kOverflow) return kSeveralBytes | lowByte;
    EXPECT_EQ(fault, kNoFault) << unsigned{character};
    return BytesOfText(text) == Bytes{lowByte} ? lowByte : std::uint16_t{0xFFFF};
  }
  VisiblePage Seen();

  std::unique_ptr<Component> api = MakeComponent();
};

// A line of encryption.txt: provider, hash, cipher, password, plaintext, ciphertext, source.
bool CodePageMembersTest::Passes(const VectorLine& line) {
  const auto hash = static_cast<std::int16_t>(NumberOfField(line.fields[1]));
  const auto cipher = static_cast<std::int16_t>(NumberOfField(line.fields[2]));
  const Bytes plaintext = BytesOfField(line.fields[4]);
  const Bytes ciphertext = BytesOfField(line.fields[5]);
  api->CreateService();
  api->EnhancedProvider(line.fields[0] == "1");
  api->UseDefaultPWD(false);
  SetPassword(BytesOfField(line.fields[3]));
  if (Encrypted(plaintext, hash, cipher) != ciphertext) return false;
  // Text loses its trailing spaces, so such a ciphertext is damaged.
  const Bytes expected = ciphertext.back() == ' ' ? Bytes() : plaintext;
  return Decrypted(ciphertext, hash, cipher) == expected;
}

VisiblePage CodePageMembersTest::Seen() {
  Text all;
  for (unsigned character = 0; character < kCharacters; ++character) {
    all.push_back(static_cast<char16_t>(character));
  }
  const Bytes lowBytes = FromHex(HexOfText(all));
  VisiblePage page;
  for (const char16_t character : all) {
    page.codes.push_back(CodeOf(character, lowBytes.at(character)));
  }
  const Text characters = EveryCharacter();
  for (std::size_t byte = 0; byte < characters.size(); ++byte) {
    page.characters.at(byte) = characters[byte];
  }
  return page;
}

TEST_F(CodePageMembersTest, EveryVectorEncryptsAndDecrypts) {
  const auto lines = ReadVectors("encryption.txt", 7);
  std::size_t passed = 0;
  for (const VectorLine& line : lines) {
    const bool passes = Passes(line);
    EXPECT_TRUE(passes) << line.place;
    passed += passes ? 1 : 0;
  }
  std::printf("counted: vectors %zu %zu\n", passed, lines.size());
}

TEST_F(CodePageMembersTest, EveryCharacterConvertsAsOnThePlatform) {
  const VisiblePage seen = Seen();
  if (const auto platform = PlatformPage()) {
    std::size_t same = 0;
    for (std::size_t i = 0; i < kCharacters; ++i) same += seen.codes[i] == platform->codes[i];
    std::printf("counted: platform %zu %zu\n", same, kCharacters);
    std::printf("measured: %s\n", LineOf(Number(), *platform, "Wine8.0").c_str());
    EXPECT_EQ(same, kCharacters);
    EXPECT_EQ(seen.characters, platform->characters);
  }
}

TEST_F(CodePageMembersTest, EveryCharacterConvertsAsWasMeasured) {
  std::string measured;
  for (const VectorLine& line : ReadVectors("code_pages.txt", 6)) {
    if (NumberOfField(line.fields[0]) != Number()) continue;
    for (const std::string& field : line.fields) measured += (measured.empty() ? "" : " ") + field;
  }
  EXPECT_EQ(LineOf(Number(), Seen(), "Wine8.0"), measured);
}

TEST_F(CodePageMembersTest, EveryByteIsACharacterAndBack) {
  const Text text = EveryCharacter();
  EXPECT_EQ(std::set<char16_t>(text.begin(), text.end()).size(), 256U);
  EXPECT_EQ(BytesOfText(text), EveryByte());
}

TEST_F(CodePageMembersTest, EveryByteHasItsHexadecimalForm) {
  EXPECT_EQ(HexOfText(EveryCharacter()), Hex(EveryByte()));
  EXPECT_EQ(api->ConvertStringFromHex(Wide(Hex(EveryByte()))), EveryCharacter());
}

TEST_F(CodePageMembersTest, EveryByteIsEncryptedAndDecrypted) {
  SetPassword(BytesOf("secret"));
  const Bytes ciphertext = Encrypted(EveryByte(), kMd5, kRc4);
  EXPECT_EQ(Decrypted(ciphertext, kMd5, kRc4), EveryByte());
  // The MD5 of RC4 under the MD5 of "secret", computed in Python.
  EXPECT_EQ(Md5(api->ByteArrayToString(ArrayOf(ciphertext))), "4536829A75A9082FD24BF3D441F78565");
}

TEST_F(CodePageMembersTest, EveryByteIsTakenInAPassword) {
  SetPassword(EveryByte());
  EXPECT_EQ(DataOf(api->Password()), EveryByte());
  // RC4 under the MD5 of the 256 bytes, computed in Python.
  EXPECT_EQ(Hex(Encrypted(BytesOf("attack at dawn"), kMd5, kRc4)), "49D08EEA896AE29B0FA7A0224A07");
}

TEST_F(CodePageMembersTest, EveryByteIsHashed) {
  EXPECT_EQ(Md5(EveryCharacter()), "E2C865DB4162BED963BFAA9EF6AC18F0");
  SetPassword(EveryByte());
  EXPECT_EQ(Ascii(api->CreateHash(EveryCharacter(), kMd5, true, true, false)),
            "F5C8E3C31C044BAE0E65569560B54332");  // of the 256 bytes twice
}

TEST_F(CodePageMembersTest, EveryByteOfARawDigestIsACharacter) {
  std::set<std::uint8_t> bytes;
  for (const char16_t character : EveryCharacter()) {
    for (std::size_t length = 1; length < 4; ++length) {
      const Text text(length, character);
      const Text digest = api->CreateHash(text, kMd5, false, false, false);
      EXPECT_EQ(HexOfText(digest), WithoutSpaces(Md5(text)));
      const Bytes raw = BytesOfText(digest);
      bytes.insert(raw.begin(), raw.end());
    }
  }
  EXPECT_EQ(bytes.size(), 256U);
}

// Some draws fail if the volume's number and the uptime overflow (433, 434).
template <class Draw>
void ExpectEveryCharacterIn(const Text& every, Draw&& draw) {
  const std::set<char16_t> expected(every.begin(), every.end());
  std::set<char16_t> drawn;
  for (int round = 0; round < 200 && drawn.size() < expected.size(); ++round) {
    const Text text = draw();
    drawn.insert(text.begin(), text.end());
  }
  EXPECT_EQ(drawn, expected);
}

TEST_F(CodePageMembersTest, EveryByteOccursInRandomText) {
  ExpectEveryCharacterIn(EveryCharacter(),
                         [&] { return api->CreateRandom(80'000, true, false, false); });
}

TEST_F(CodePageMembersTest, EveryByteOccursInARawSalt) {
  ExpectEveryCharacterIn(EveryCharacter(), [&] { return api->CreateSaltValue(80'000, false); });
}

TEST_F(CodePageMembersTest, ACharacterOfSeveralBytesIsAnOverflow) {
  const Text text(1, u'\u4E00');
  const bool hasSeveral = Number() == 65001 || (Number() > 900 && Number() < 1000);
  EXPECT_EQ(FaultOf([&] { return api->StringToByteArray(TextView(text)); }),
            hasSeveral ? kOverflow : kNoFault);
  EXPECT_EQ(Md5(text).empty(), hasSeveral);
  EXPECT_EQ(api->Record().location, hasSeveral ? 432 : 0);
  EXPECT_EQ(api->Record().rtNumber, hasSeveral ? kOverflow : kNoFault);
}

// On UTF-8 they are halves of a four-byte character, so different texts have different digests.
TEST_F(CodePageMembersTest, ASurrogateIsAnOverflowOnUtf8AndMissingElsewhere) {
  const bool isUtf8 = Number() == 65001;
  for (const Text& text : {Text(u"\U0001F600"), Text(1, 0xD83D), Text(1, 0xDE00)}) {
    EXPECT_EQ(FaultOf([&] { return api->StringToByteArray(TextView(text)); }),
              isUtf8 ? kOverflow : kNoFault);
    EXPECT_EQ(Md5(text), isUtf8 ? "" : Md5(Text(text.size(), u'?')));
    const std::string digits = isUtf8 ? "BD" : "3F";
    EXPECT_EQ(HexOfText(text), text.size() == 2 ? digits + digits : digits);
  }
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  try {
    latchkey::test::UsePage(latchkey::test::Number());
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return EXIT_FAILURE;
  }
  return RUN_ALL_TESTS();
}
