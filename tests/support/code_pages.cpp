#include "tests/support/code_pages.h"

namespace latchkey::test {
namespace {

using platform::CodePage;

constexpr std::int32_t kFirstHighByte = 0x80;

// ASCII, then what `high` makes of each byte above it.
template <class HighHalf>
CodePage::ByteTable TableOf(HighHalf high) {
  CodePage::ByteTable table{};
  for (std::int32_t byte = 0; byte < 256; ++byte) {
    table[static_cast<std::size_t>(byte)] = byte < kFirstHighByte ? byte : high(byte);
  }
  return table;
}

std::uint32_t NoLongCode(char16_t /*character*/) { return CodePage::kDefaultCode; }

std::int32_t OneToOneCharacter(std::int32_t byte) { return byte == 0x80 ? 0x20AC : 0x400 + byte; }

std::int32_t DoubleByteCharacter(std::int32_t byte) {
  if (byte >= 0xA1 && byte <= 0xDF) return 0xFF61 + byte - 0xA1;
  const bool leadByte = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
  return leadByte ? CodePage::kNoCharacter : byte;
}

std::uint32_t DoubleByteCode(char16_t character) {
  return character == 0x3042 ? 0x82A0 : CodePage::kDefaultCode;
}

// The bytes of RFC 3629, section 3, as one number.
std::uint32_t Utf8Code(char16_t character) {
  const auto code = static_cast<std::uint32_t>(character);
  if (code >= 0xD800 && code <= 0xDFFF) return CodePage::kDefaultCode;
  const std::uint32_t last = 0x80 | (code & 0x3F);
  if (code < 0x800) return (0xC0 | code >> 6) << 8 | last;
  return (0xE0 | code >> 12) << 16 | (0x80 | (code >> 6 & 0x3F)) << 8 | last;
}

}  // namespace

const CodePage& OneToOnePage() {
  static const CodePage page(TableOf(OneToOneCharacter), NoLongCode);
  return page;
}

const CodePage& DoubleBytePage() {
  static const CodePage page(TableOf(DoubleByteCharacter), DoubleByteCode);
  return page;
}

const CodePage& Utf8Page() {
  static const CodePage page(TableOf([](std::int32_t) { return CodePage::kNoCharacter; }),
                             Utf8Code);
  return page;
}

const CodePage& TwoBytesOneCharacterPage() {
  static const CodePage page(
      TableOf([](std::int32_t byte) { return byte <= 0x81 ? 0x20AC : byte; }), NoLongCode);
  return page;
}

}  // namespace latchkey::test
