#include "cli/visible_text.h"

#include <gtest/gtest.h>

namespace latchkey::test {
namespace {

using namespace cli;  // NOLINT: the namespace under test

TEST(WithoutControlsTest, ControlCharactersAreEscaped) {
  EXPECT_EQ(WithoutControls("a\x1b[31mb\x7f\tc\n"), "a\\x1b[31mb\\x7f\\x09c\\n");
  EXPECT_EQ(WithoutControls("a\xC2\x9B"
                            "31mb\xC2\x80\xC2\x9F"),
            "a\\xc2\\x9b31mb\\xc2\\x80\\xc2\\x9f");
  // A terminal with a single-byte encoding sees the same control character here.
  EXPECT_EQ(WithoutControls("a\x9B"
                            "31mb"),
            "a\\x9b31mb");
  // NOLINTBEGIN(misc-misleading-bidirectional): the characters under test
  EXPECT_EQ(WithoutControls("\xE2\x80\xAE"
                            "gpj.exe"),
            "\\xe2\\x80\\xaegpj.exe");  // U+202E
  EXPECT_EQ(WithoutControls("\xE2\x81\xA6\xD8\x9C\xE2\x80\x8F\xE2\x80\xA8"),
            "\\xe2\\x81\\xa6\\xd8\\x9c\\xe2\\x80\\x8f\\xe2\\x80\\xa8");
  // NOLINTEND(misc-misleading-bidirectional)
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

}  // namespace
}  // namespace latchkey::test
