#include "crypto/text_codec.h"

#include <gtest/gtest.h>

#include "tests/support/bytes.h"
#include "tests/support/code_pages.h"
#include "tests/support/fault_of.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

class TextCodecTest : public testing::Test {
 protected:
  void Use(const CodePage& page) { scope.Services().codePage = &page; }

  static Bytes Encoded(TextView text) {
    const auto bytes = EncodeText(text);
    return {bytes.begin(), bytes.end()};
  }
  static Bytes LowBytes(TextView text) {
    Bytes bytes(text.size());
    EncodeLowBytes(text, bytes);
    return bytes;
  }
  static Text Decoded(const Bytes& bytes) {
    Text text = u"earlier";
    DecodeBytes(bytes, text);
    return text;
  }

  ModuleScope scope;
};

Bytes EveryByte() {
  Bytes bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<std::uint8_t>(byte));
  return bytes;
}

TEST_F(TextCodecTest, EveryByteOfEveryPageSurvivesDecodingAndEncoding) {
  for (const CodePage* page :
       {&platform::SystemCodePage(), &OneToOnePage(), &DoubleBytePage(), &Utf8Page()}) {
    Use(*page);
    EXPECT_EQ(Encoded(Decoded(EveryByte())), EveryByte());
    EXPECT_EQ(LowBytes(Decoded(EveryByte())), EveryByte());
  }
}

TEST_F(TextCodecTest, CharactersAreConvertedByTheCodePage) {
  Use(OneToOnePage());
  EXPECT_EQ(Encoded(u"A\u20AC\u0481"), (Bytes{0x41, 0x80, 0x81}));
  EXPECT_EQ(Decoded({0x41, 0x80, 0x81}), u"A\u20AC\u0481");
}

TEST_F(TextCodecTest, ACharacterOutsideTheCodePageBecomesAQuestionMark) {
  Use(OneToOnePage());
  EXPECT_EQ(Encoded(u"\u00E9\u3042\xD800"), (Bytes{63, 63, 63}));
  EXPECT_EQ(LowBytes(u"\u00E9\u3042\xD800"), (Bytes{63, 63, 63}));
}

TEST_F(TextCodecTest, EmptyTextStaysEmpty) {
  EXPECT_EQ(Encoded(u""), Bytes());
  EXPECT_EQ(Decoded({}), u"");
}

TEST_F(TextCodecTest, ACharacterOfTwoBytesOverflows) {
  Use(DoubleBytePage());
  EXPECT_EQ(FaultOf([] { return EncodeText(u"a\u3042"); }), 6);
  EXPECT_EQ(LowBytes(u"a\u3042"), (Bytes{0x61, 0xA0}));
}

TEST_F(TextCodecTest, SingleBytesOfADoubleBytePageStillConvert) {
  Use(DoubleBytePage());
  EXPECT_EQ(Encoded(u"a\uFF61\uFF9F"), (Bytes{0x61, 0xA1, 0xDF}));
  EXPECT_EQ(Decoded({0x61, 0xA1, 0xDF}), u"a\uFF61\uFF9F");
}

TEST_F(TextCodecTest, AByteThatIsNotACharacterBecomesTheOneWithItsNumber) {
  Use(DoubleBytePage());
  EXPECT_EQ(Decoded({0x61, 0x82, 0xE0}), u"a\u0082\u00E0");
  EXPECT_EQ(Encoded(u"a\u0082\u00E0"), (Bytes{0x61, 0x82, 0xE0}));
}

TEST_F(TextCodecTest, Latin1TextHasTheSameBytesOnUtf8) {
  Use(Utf8Page());
  EXPECT_EQ(Encoded(u"plain caf\u00E9 \u00FF"), BytesOf("plain caf\xE9 \xFF"));
  EXPECT_EQ(FaultOf([] { return EncodeText(u"\u0100"); }), 6);
  EXPECT_EQ(LowBytes(u"\u0100\u20AC"), (Bytes{0x80, 0xAC}));
}

TEST_F(TextCodecTest, TrimsSpacesAndNothingElse) {
  const Bytes codes = BytesOf("  \ta b\t  ");
  const auto trailing = TrimTrailingSpaces(codes);
  const auto both = TrimSpaces(codes);
  EXPECT_EQ(Bytes(trailing.begin(), trailing.end()), BytesOf("  \ta b\t"));
  EXPECT_EQ(Bytes(both.begin(), both.end()), BytesOf("\ta b\t"));
  EXPECT_TRUE(TrimSpaces(BytesOf("   ")).empty());
  EXPECT_TRUE(TrimSpaces(Bytes()).empty());
}

// Long text is converted in steps; the character beyond ASCII may be at any place in a step.
TEST_F(TextCodecTest, ConvertsACharacterBeyondAsciiAtAnyPosition) {
  for (std::size_t position = 0; position < 200; ++position) {
    Text text(200, u'a');
    text[position] = 0x20AC;
    Bytes bytes(200, 'a');
    bytes[position] = 0x80;
    EXPECT_EQ(Encoded(text), bytes) << position;
    EXPECT_EQ(Decoded(bytes), text) << position;
  }
}

}  // namespace
}  // namespace latchkey::test
