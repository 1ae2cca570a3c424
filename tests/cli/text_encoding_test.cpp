// Encodings of passwords and of text in records.
#include "cli/text_encoding.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace latchkey::cli {
namespace {

std::optional<std::string> FromUtf8(std::string_view utf8, const std::string& name) {
  const WipedBytes bytes(utf8.begin(), utf8.end());
  const std::optional<WipedBytes> result =
      Converted(bytes, TextEncoding("utf-8"), TextEncoding(name));
  if (!result) return std::nullopt;
  return std::string(result->begin(), result->end());
}

std::optional<std::string> ToUtf8(std::string_view text, const std::string& name) {
  const WipedBytes bytes(text.begin(), text.end());
  const std::optional<WipedBytes> result =
      Converted(bytes, TextEncoding(name), TextEncoding("utf-8"));
  if (!result) return std::nullopt;
  return std::string(result->begin(), result->end());
}

struct Sample {
  const char* encoding;
  std::string utf8;
  std::string bytes;
};

// From the Unicode Consortium's tables of each code page.
const std::vector<Sample> kSamples{
    {"windows-1250", "Žluť", "\x8Elu\x9D"},
    {"windows-1251", "Пароль", "\xCF\xE0\xF0\xEE\xEB\xFC"},
    {"windows-1252", "Größe €",
     "Gr\xF6\xDF"
     "e \x80"},
    {"windows-1253", "Ωμέγα", "\xD9\xEC\xDD\xE3\xE1"},
    {"windows-1254", "şifreİ", "\xFEifre\xDD"},
    {"windows-1255", "שלום", "\xF9\xEC\xE5\xED"},
    {"windows-1256", "سلام", "\xD3\xE1\xC7\xE3"},
    {"windows-1257", "Ąžuolas", "\xC0\xFEuolas"},
    {"windows-1258", "mật", ""},  // no such precomposed character
    {"windows-1258", "đường", ""},
    {"windows-1258", "đươ", "\xF0\xFD\xF5"},
    {"windows-874", "รหัส", "\xC3\xCB\xD1\xCA"},
    {"windows-932", "パスワードｱ", "\x83\x70\x83\x58\x83\x8F\x81\x5B\x83\x68\xB1"},
    {"windows-936", "密码€", "\xC3\xDC\xC2\xEB\x80"},
    {"windows-949", "암호", "\xBE\xCF\xC8\xA3"},
    {"windows-950", "密碼", "\xB1\x4B\xBD\x58"},
    {"utf-8", "Größe 🔑", "Größe 🔑"},
    {"utf-16le", "ß🔑", std::string("\xDF\0\x3D\xD8\x11\xDD", 6)},
};

TEST(TextEncodingTest, ConvertsSamplesOfEachEncodingAndBack) {
  for (const Sample& sample : kSamples) {
    const auto bytes = FromUtf8(sample.utf8, sample.encoding);
    if (sample.bytes.empty()) {
      EXPECT_FALSE(bytes) << sample.encoding;
      continue;
    }
    EXPECT_EQ(bytes, sample.bytes) << sample.encoding << ' ' << sample.utf8;
    EXPECT_EQ(ToUtf8(sample.bytes, sample.encoding), sample.utf8) << sample.encoding;
  }
}

TEST(TextEncodingTest, HasNoSimilarCharacters) {
  EXPECT_FALSE(FromUtf8("Ā", "windows-1252"));  // A is only similar
  EXPECT_FALSE(FromUtf8("？", "windows-1252"));
  EXPECT_FALSE(FromUtf8("ö", "windows-932"));
  EXPECT_FALSE(FromUtf8("🔑", "windows-950"));
  EXPECT_EQ(FromUtf8("?", "windows-1252"), "?");
}

TEST(TextEncodingTest, EveryByteOfSingleBytePagesIsACharacter) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  for (const std::string& name : TextEncodingNames()) {
    if (!name.starts_with("windows-1") && name != "windows-874") continue;
    const auto utf8 = ToUtf8(all, name);
    ASSERT_TRUE(utf8) << name;
    EXPECT_EQ(FromUtf8(*utf8, name), all) << name;
  }
}

TEST(TextEncodingTest, ALeadByteAloneIsNotACharacter) {
  for (const char* const name : {"windows-932", "windows-936", "windows-949", "windows-950"}) {
    EXPECT_FALSE(ToUtf8("\x88", name)) << name;      // cut
    EXPECT_FALSE(ToUtf8("\x88\x20", name)) << name;  // no trail byte
    EXPECT_FALSE(FromUtf8("\xC2\x88", name)) << name;
  }
}

TEST(TextEncodingTest, InvalidUtf8AndUtf16AreRefused) {
  for (const char* const bad : {"\xFF", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
    EXPECT_FALSE(FromUtf8(bad, "utf-16le")) << bad;
  }
  using namespace std::string_view_literals;
  for (const std::string_view bad : {"a"sv, "\0\xD8"sv, "\0\xDC"sv, "\0\xD8\0\xD8"sv}) {
    EXPECT_FALSE(ToUtf8(bad, "utf-16le"));
  }
  EXPECT_EQ(ToUtf8(""sv, "utf-16le"), "");
}

TEST(TextEncodingTest, NamesAreTakenInTheFormsOfOtherPrograms) {
  const auto meaning = [](std::string name) {
    const std::string complaint = EncodingName()(name);
    return complaint.empty() ? name : "refused";
  };
  for (const char* const form : {"windows-1252", "Windows1252", "1252", "cp1252", "CP1252"}) {
    EXPECT_EQ(meaning(form), "windows-1252");
  }
  EXPECT_EQ(meaning("UTF8"), "utf-8");
  EXPECT_EQ(meaning("utf-16le"), "utf-16le");
  EXPECT_EQ(meaning("Bytes"), "bytes");
  for (const char* const form : {"1259", "cp", "", "utf-16", "latin1", "1"}) {
    EXPECT_EQ(meaning(form), "refused") << form;
  }
}

}  // namespace
}  // namespace latchkey::cli
