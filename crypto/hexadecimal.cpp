#include "crypto/hexadecimal.h"

#include <algorithm>

#include "base/hex_digits.h"
#include "crypto/text_capacity.h"
#include "crypto/text_codec.h"
#include "crypto/text_filling.h"

namespace latchkey {
namespace {

// Sets `text` to the digits of `count` bytes; codesAt(i, n) returns the n bytes from index i on.
template <class CodesAt>
void EncodeCodes(std::size_t count, Text& text, CodesAt&& codesAt) {
  CheckTextCapacity(count, kDigitsPerByte);
  FillText(text, count * kDigitsPerByte, [&](std::size_t from, std::span<char16_t> digits) {
    const std::span<const std::uint8_t> codes =
        codesAt(from / kDigitsPerByte, digits.size() / kDigitsPerByte);
    FastestHexDigits().encode(codes.data(), codes.size(), digits.data());
  });
}

void DecodePairs(TextView text, std::size_t from, std::span<std::uint8_t> bytes) noexcept {
  DecodeHex(text.substr(from * kDigitsPerByte, bytes.size() * kDigitsPerByte), bytes);
}

// The number of pairs without those at the end that decode to spaces.
std::size_t PairsBeforeSpaces(TextView text) {
  constexpr std::size_t kPairs = 64;
  std::size_t pairs = text.size() / kDigitsPerByte;
  InlineBytes codes(std::min(kPairs, pairs));
  while (pairs > 0) {
    const auto last = codes.All().first(std::min(kPairs, pairs));
    DecodePairs(text, pairs - last.size(), last);
    const std::size_t kept = TrimTrailingSpaces(last).size();
    pairs -= last.size() - kept;
    if (kept > 0) break;
  }
  return pairs;
}

}  // namespace

void EncodeHex(std::span<const std::uint8_t> bytes, Text& text) {
  EncodeCodes(bytes.size(), text,
              [&](std::size_t from, std::size_t count) { return bytes.subspan(from, count); });
}

void EncodeHexOfText(TextView characters, Text& text) {
  constexpr std::size_t kCodes = kPieceLength / kDigitsPerByte;
  WipedBuffer<std::uint8_t, kCodes> codes(std::min(kCodes, characters.size()));
  EncodeCodes(characters.size(), text, [&](std::size_t from, std::size_t count) {
    const auto piece = codes.All().first(count);
    EncodeLowBytes(characters.substr(from, count), piece);
    return piece;
  });
}

void DecodeHex(TextView text, std::span<std::uint8_t> bytes) noexcept {
  FastestHexDigits().decode(text.data(), bytes.size(), bytes.data());
}

void DecodeHexToText(TextView digits, Text& text) {
  CheckTextCapacity(digits.size() / kDigitsPerByte, 1);
  const std::size_t length = PairsBeforeSpaces(digits);
  WipedBuffer<std::uint8_t, kPieceLength> codes(std::min(kPieceLength, length));
  FillText(text, length, [&](std::size_t from, std::span<char16_t> characters) {
    const auto piece = codes.All().first(characters.size());
    DecodePairs(digits, from, piece);
    DecodeBytes(piece, characters);
  });
}

}  // namespace latchkey
