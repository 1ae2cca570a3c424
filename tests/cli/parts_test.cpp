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

TEST(ChecksumLineTest, NamesWithBackslashesAndLineEndsAreEscapedAndReadBack) {
  EXPECT_EQ(ChecksumLine(kDigest, "a b"), kDigest + "  a b");
  EXPECT_EQ(ChecksumLine(kDigest, "a\\b\nc\rd"), "\\" + kDigest + "  a\\\\b\\nc\\rd");
  for (const char* const name : {"a b", "a\\b\nc\rd", " leading", "*star", "tail "}) {
    const auto read = ReadChecksumLine(ChecksumLine(kDigest, name), kForm);
    ASSERT_TRUE(read) << name;
    EXPECT_EQ(read->name, name);
    EXPECT_EQ(read->digest, kDigest);
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

TEST(HexReaderTest, ADigitWithoutItsSecondWaitsForTheNextPiece) {
  HexReader reader;
  constexpr std::array<std::uint8_t, 4> kFirst{'4', '1', '\n', '4'};
  constexpr std::array<std::uint8_t, 2> kSecond{'\r', 'b'};
  EXPECT_EQ(reader.Read(kFirst, "f"), WipedBytes(1, 0x41));
  EXPECT_TRUE(reader.IsOdd());
  EXPECT_EQ(reader.Read(kSecond, "f"), WipedBytes(1, 0x4B));
  EXPECT_FALSE(reader.IsOdd());
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
  const auto taken = cli::TakeVariable("LATCHKEY_TEST_SECRET");
  ASSERT_TRUE(taken);
  EXPECT_EQ(std::string(taken->begin(), taken->end()), "secret value");
  EXPECT_FALSE(cli::TakeVariable("LATCHKEY_TEST_SECRET"));
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
