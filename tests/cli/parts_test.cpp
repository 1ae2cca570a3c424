// Unit tests of the command's small parts.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <string>

#include "cli/checksum_file.h"
#include "cli/failure.h"
#include "cli/hex_text.h"
#include "cli/platform/environment.h"
#include "cli/progress.h"
#include "cli/visible_text.h"

namespace latchkey::test {
namespace {

using namespace cli;  // NOLINT: the namespace under test

const std::string kDigest = "900150983cd24fb0d6963f7d28e17f72";
const ChecksumForm kForm{"MD5", 32};

TEST(ChecksumLinesTest, ListsMayHaveAnyLineEndAndByteOrderMark) {
  const std::vector<std::string> expected{"a", "", "\u00FCb"};
  EXPECT_EQ(ChecksumLines("a\n\n\u00FCb"), expected);
  EXPECT_EQ(ChecksumLines("a\r\n\r\n\u00FCb\r\n"), expected);
  EXPECT_EQ(ChecksumLines("\xEF\xBB\xBF"
                          "a\n\n\u00FCb\n"),
            expected);
  EXPECT_EQ(ChecksumLines(std::string("\xFF\xFE"
                                      "a\0\r\0\n\0\n\0\xFC\0b\0",
                                      14)),
            expected);
  EXPECT_EQ(ChecksumLines(std::string("\xFE\xFF\0a\0\n\0\n\0\xFC\0b", 12)), expected);
  EXPECT_EQ(ChecksumLines(""), std::vector<std::string>());
  EXPECT_THROW((void)ChecksumLines(std::string("\xFF\xFE"
                                               "a\0b",
                                               5)),
               CommandError);
}

TEST(ChecksumLineTest, ZeroEndsALineWithoutEscapes) {
  EXPECT_EQ(WrittenLine({kDigest, "a\nb"}, kForm, {true, true}),
            "MD5 (a\nb) = " + kDigest + std::string(1, '\0'));
}

TEST(ChecksumLineTest, NamesWithBackslashesAndLineEndsAreEscapedAndReadBack) {
  EXPECT_EQ(WrittenLine({kDigest, "a b"}, kForm, {}), kDigest + "  a b\n");
  EXPECT_EQ(WrittenLine({kDigest, "a\\b\nc\rd"}, kForm, {}), "\\" + kDigest + "  a\\\\b\\nc\\rd\n");
  for (const char* const name : {"a b", "a\\b\nc\rd", " leading", "*star", "tail "}) {
    for (const bool tagged : {false, true}) {
      std::string line = WrittenLine({kDigest, name}, kForm, {tagged});
      line.pop_back();
      const auto read = ReadChecksumLine(line, kForm);
      ASSERT_TRUE(read) << line;
      EXPECT_EQ(read->name, name);
      EXPECT_EQ(read->digest, kDigest);
    }
  }
}

TEST(ChecksumLineTest, OtherFormsAreRefused) {
  const std::string digest = kDigest;
  for (const std::string& line :
       {std::string(), digest, digest + "  ", digest + " name", digest + "0  name",
        digest.substr(1) + "  name", "g" + digest.substr(1) + "  name", "\\" + digest + "  a\\tb",
        "\\" + digest + "  a\\", "MD5 (name) = " + digest.substr(1), "MD5 () = " + digest,
        "SHA1 (name) = " + digest}) {
    EXPECT_FALSE(ReadChecksumLine(line, kForm)) << line;
  }
}

// The bytes of a text that arrives in pieces of that length.
WipedBytes ReadHex(std::string_view text, std::size_t piece) {
  HexReader reader;
  WipedBytes all;
  for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) {
    const std::string_view part = text.substr(0, piece);
    const WipedBytes bytes =
        reader.Read({reinterpret_cast<const std::uint8_t*>(part.data()), part.size()}, "f");
    all.insert(all.end(), bytes.begin(), bytes.end());
  }
  reader.Finish("f");
  return all;
}

TEST(HexReaderTest, WhiteSpaceAndPrefixesAreSkippedWhereverAPieceEnds) {
  const WipedBytes expected{0x41, 0x0B, 0x00, 0xC0};
  for (const char* const text :
       {"410b00C0", "4\r\n1 0\tB 00 c 0\n", "0x410B00C0", "0x41 0X0b 0x00 0xC0",
        "\\x41\\x0B\\x00\\xc0", "\\x410B00C0\n", "0x410x0B0x000xC0"}) {
    for (const std::size_t piece : {1U, 2U, 3U, 100U})
      EXPECT_EQ(ReadHex(text, piece), expected) << text;
  }
}

TEST(HexReaderTest, OtherCharactersAndHalfBytesAreRefused) {
  for (const char* const text :
       {"4", "410", "0", "0x4", "40x41", "4x41", "x41", "\\", "41\\", "\\41", "4\\x41", "41,42",
        "0x0x41", "41 0x", "41\\x", "\\x41\\x\n", "\\x\n41\\x"}) {
    for (const std::size_t piece : {1U, 100U})
      EXPECT_THROW((void)ReadHex(text, piece), CommandError) << text;
  }
}

TEST(ProgressLineTest, ShowsBytesRateAndTimeLeftWithinTheColumns) {
  EXPECT_EQ(ProgressLine(500'000, 1'000'000, 2, 80),
            " 50% [====================                    ] 500 kB  250 kB/s  0:02 left");
  EXPECT_EQ(ProgressLine(1'500'000'000, std::nullopt, 10, 80), "1.5 GB  150 MB/s");
  EXPECT_EQ(ProgressLine(1000, 7'200'000, 1, 20), "  0% 1.0 kB  1.0 kB/s  1:59:59 left");
  for (unsigned columns = 50; columns < 200; ++columns) {
    EXPECT_LT(ProgressLine(123'456'789, 1'234'567'890, 3, columns).size(), columns);
  }
}

TEST(ProgressLineTest, MoreThanExpectedIsAFullBar) {
  EXPECT_EQ(ProgressLine(20, 10, 1, 60).substr(0, 5), "100% ");
}

// CMakeLists.txt sets the variable for the test.
TEST(TakeVariableTest, RemovesTheVariable) {
  const auto taken = cli::TakeVariable("LATCHKEY_TEST_SECRET", TextForm::Bytes);
  ASSERT_TRUE(taken);
  EXPECT_EQ(std::string(taken->begin(), taken->end()), "secret value");
  EXPECT_FALSE(cli::TakeVariable("LATCHKEY_TEST_SECRET", TextForm::Bytes));
}

TEST(WithoutControlsTest, ControlCharactersAreEscaped) {
  EXPECT_EQ(WithoutControls("a\x1b[31mb\x7f\tc\n"), "a\\x1b[31mb\\x7f\\x09c\\n");
  EXPECT_EQ(WithoutControls("a\xC2\x9B"
                            "31mb\xC2\x80\xC2\x9F"),
            "a\\xc2\\x9b31mb\\xc2\\x80\\xc2\\x9f");
  // A terminal with a single-byte encoding sees the same control character here.
  EXPECT_EQ(WithoutControls("a\x9B"
                            "31mb"),
            "a\\x9b31mb");
  EXPECT_EQ(WithoutControls("\xE2\x80\xAE"
                            "gpj.exe"),
            "\\xe2\\x80\\xaegpj.exe");  // U+202E
  EXPECT_EQ(WithoutControls("\xE2\x81\xA6\xD8\x9C\xE2\x80\x8F\xE2\x80\xA8"),
            "\\xe2\\x81\\xa6\\xd8\\x9c\\xe2\\x80\\x8f\\xe2\\x80\\xa8");
}

TEST(WithoutControlsTest, InvalidUtf8IsEscapedByteByByte) {
  EXPECT_EQ(WithoutControls("\xFF\xFE"), "\\xff\\xfe");
  EXPECT_EQ(WithoutControls("\xC0\x9B"), "\\xc0\\x9b");           // an overlong form of U+001B
  EXPECT_EQ(WithoutControls("\xE0\x82\x9B"), "\\xe0\\x82\\x9b");  // and of U+009B
  EXPECT_EQ(WithoutControls("\xED\xA0\x80"), "\\xed\\xa0\\x80");  // a surrogate
  EXPECT_EQ(WithoutControls("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
  EXPECT_EQ(WithoutControls("a\xE2\x82"), "a\\xe2\\x82");  // cut off
  EXPECT_EQ(WithoutControls("\xC3("), "\\xc3(");
}

TEST(WithoutControlsTest, OtherTextIsUnchanged) {
  for (const char* const text :
       {"", "plain back\\slash", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x94\x91", "\xC2\xA0",
        "\xF4\x8F\xBF\xBF", "\xEE\x80\x80", "\xDF\xBF\xE0\xA0\x80"}) {
    EXPECT_EQ(WithoutControls(text), text);
  }
}

TEST(FailureLineTest, LocationAndNumberPrecedeTheFile) {
  EXPECT_EQ(FailureLine(FailureAt(check::kDecryptCipher, "FILE")),
            "latchkey: Error decrypting data (location 717, number 120): FILE");
  EXPECT_EQ(FailureLine(FailureOf(Fault(FaultNumber::OutOfMemory))),
            "latchkey: Out of memory (number 7)");
  EXPECT_EQ(FailureLine(WrongUsage("so not").Get()), "latchkey: so not");
}

}  // namespace
}  // namespace latchkey::test
