#include "crypto/text_codec.h"

#include <algorithm>
#include <limits>

#include "base/ascii_text.h"
#include "base/checked_arithmetic.h"
#include "crypto/text_filling.h"
#include "diagnostics/thread_state.h"

namespace latchkey {
namespace {

// Checks the codes of a whole step together, by their bitwise or: faster than checking each.
void CheckCodes(std::uint32_t together) {
  if (together > std::numeric_limits<std::uint8_t>::max()) throw Fault(FaultNumber::Overflow);
}

std::uint32_t EncodeStep(const CodePage& codePage, std::span<const char16_t> characters,
                         std::uint8_t* bytes) {
  std::uint32_t together = 0;
  for (const char16_t character : characters) {
    const std::uint32_t code = codePage.CodeOf(character);
    together |= code;
    *bytes++ = static_cast<std::uint8_t>(code & 0xFF);
  }
  return together;
}

std::size_t ConvertAscii(std::span<const char16_t> characters, std::uint8_t* bytes) noexcept {
  return FastestAsciiText().narrow(characters.data(), characters.size(), bytes);
}

std::size_t ConvertAscii(std::span<const std::uint8_t> bytes, char16_t* characters) noexcept {
  return FastestAsciiText().widen(bytes.data(), bytes.size(), characters);
}

// Converts steps of ASCII directly, since that is the same in every code page, and other steps with
// `convert`.
template <class From, class To, class Convert>
void ConvertEach(std::span<const From> from, To* to, Convert&& convert) {
  while (!from.empty()) {
    const std::size_t ascii = ConvertAscii(from, to);
    from = from.subspan(ascii);
    to += ascii;
    const auto step = from.first(std::min(from.size(), AsciiText::kStep));
    convert(step, to);
    from = from.subspan(step.size());
    to += step.size();
  }
}

}  // namespace

WipedBytes EncodeText(TextView text) {
  WipedBytes bytes(text.size());
  EncodeText(text, bytes);
  return bytes;
}

void EncodeText(TextView text, std::span<std::uint8_t> bytes) {
  const CodePage& codePage = ThreadCodePage();
  ConvertEach(std::span(text), bytes.data(),
              [&](auto step, std::uint8_t* to) { CheckCodes(EncodeStep(codePage, step, to)); });
}

void EncodeLowBytes(TextView text, std::span<std::uint8_t> bytes) {
  const CodePage& codePage = ThreadCodePage();
  ConvertEach(std::span(text), bytes.data(), [&](auto step, std::uint8_t* to) {
    static_cast<void>(EncodeStep(codePage, step, to));
  });
}

void DecodeBytes(std::span<const std::uint8_t> bytes, Text& text) {
  FillText(text, bytes.size(), [&](std::size_t from, std::span<char16_t> characters) {
    DecodeBytes(bytes.subspan(from, characters.size()), characters);
  });
}

void DecodeBytes(std::span<const std::uint8_t> bytes, std::span<char16_t> characters) {
  const CodePage& codePage = ThreadCodePage();
  ConvertEach(bytes, characters.data(), [&](auto step, char16_t* to) {
    for (const std::uint8_t byte : step) *to++ = codePage.CharacterOf(byte);
  });
}

}  // namespace latchkey
