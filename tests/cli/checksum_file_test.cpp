#include "cli/checksum_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/failure.h"

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

}  // namespace
}  // namespace latchkey::test
