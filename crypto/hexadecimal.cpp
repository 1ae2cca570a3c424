#include "crypto/hexadecimal.h"

#include <algorithm>
#include <array>
#include <utility>

#include "crypto/text_codec.h"
#include "crypto/working_text.h"
#include "platform/secure_memory.h"

namespace latchkey {
namespace {

// Digits may be a password or a key: they are neither branched on nor used as an index, so that the
// time and the cache tell nothing of them. A mask is all ones or all zeros.

// Sixteen bits throughout, the width of a character: twice as many fit a vector register.
using Bits = std::uint16_t;

constexpr Bits BitsOf(int value) { return static_cast<Bits>(value); }

// `high` less than 8000 (hexadecimal) above `low`.
constexpr Bits MaskIfBetween(Bits value, Bits low, Bits high) {
  return BitsOf((BitsOf(BitsOf(value - low) | BitsOf(high - value)) >> 15) - 1);
}

constexpr char16_t DigitOf(int value) {
  constexpr Bits kGap = u'A' - (u'9' + 1);
  return static_cast<char16_t>(u'0' + value + (MaskIfBetween(BitsOf(value), 10, 15) & kGap));
}

constexpr Bits MaskIfSkipped(Bits character) {
  static_assert(u'\t' + 1 == u'\n');
  return MaskIfBetween(character, u' ', u' ') | MaskIfBetween(character, u'\t', u'\n');
}

struct Digit {
  Bits mask;  // of being one
  Bits value;
};

constexpr Digit ReadDigit(Bits character) {
  const Bits lowerCase = character | Bits{0x20};
  const Bits isDecimal = MaskIfBetween(character, u'0', u'9');
  const Bits isLetter = MaskIfBetween(lowerCase, u'a', u'f');
  return {BitsOf(isDecimal | isLetter),
          BitsOf((isDecimal & (character - u'0')) | (isLetter & (lowerCase - u'a' + 10)))};
}

constexpr std::uint8_t ReadPair(char16_t first, char16_t second) {
  const Digit high = ReadDigit(first);
  const Digit low = ReadDigit(second);
  const Bits both = BitsOf(high.mask & low.mask & (high.value * 16 + low.value));
  const Bits firstAlone = BitsOf(high.mask & ~low.mask & high.value);
  const Bits secondAlone = BitsOf(MaskIfSkipped(first) & low.mask & low.value);
  return static_cast<std::uint8_t>(both | firstAlone | secondAlone);
}

// So many bytes are converted at a time: few enough to stay in the processor's nearest cache.
constexpr std::size_t kPiece = 512;

// What is converted at a time.
struct Piece {
  Piece() = default;
  Piece(const Piece&) = delete;
  Piece& operator=(const Piece&) = delete;
  ~Piece() { platform::SecureWipe(this, sizeof *this); }

  void AppendDigits(std::span<const std::uint8_t> of, Text& text) {
    for (std::size_t i = 0; i < of.size(); ++i) {
      digits[2 * i] = DigitOf(of[i] >> 4);
      digits[2 * i + 1] = DigitOf(of[i] & 0x0F);
    }
    text.append(digits.data(), 2 * of.size());
  }

  std::array<std::uint8_t, kPiece> bytes;
  std::array<char16_t, kPiece * kDigitsPerByte> digits;
};

// Calls `append` for each piece of the source, to fill a text that has room for all.
template <class Source, class Append>
void AppendPieces(const Source& source, Text& text, Append&& append) {
  WorkingText::CheckCapacity(source.size(), kDigitsPerByte);
  Text room;
  room.reserve(source.size() * kDigitsPerByte);
  text = std::move(room);
  for (std::size_t done = 0; done < source.size(); done += kPiece) {
    append(source.subspan(done, std::min(kPiece, source.size() - done)));
  }
}

}  // namespace

void EncodeHex(std::span<const std::uint8_t> bytes, Text& text) {
  Piece piece;  // NOLINT(cppcoreguidelines-pro-type-member-init): written before it is read
  AppendPieces(bytes, text, [&](auto part) { piece.AppendDigits(part, text); });
}

void EncodeHexOfText(TextView characters, Text& text) {
  Piece piece;  // NOLINT(cppcoreguidelines-pro-type-member-init): written before it is read
  AppendPieces(std::span(characters), text, [&](auto part) {
    const auto codes = std::span(piece.bytes).first(part.size());
    EncodeLowBytes({part.data(), part.size()}, codes);
    piece.AppendDigits(codes, text);
  });
}

void DecodeHex(TextView text, std::span<std::uint8_t> bytes) noexcept {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = ReadPair(text[2 * i], text[2 * i + 1]);
  }
}

}  // namespace latchkey
