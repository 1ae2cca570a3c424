// The C interface: hexadecimal text.
#include <algorithm>
#include <array>

#include "base/hex_digits.h"
#include "base/secure_memory.h"
#include "c/call.h"
#include "crypto/hexadecimal.h"

namespace latchkey::c {
namespace {

constexpr std::size_t kDigits = static_cast<std::size_t>(kDigitsPerByte);

// Bytes converted at a time, through 16-bit digits on the stack.
constexpr std::size_t kPiece = 256;
using Digits = std::array<char16_t, kDigits * kPiece>;

Outcome Encode(InputBytes bytes, Output& output) {
  const std::size_t needed = kDigits * bytes.size() + 1;
  if (output.Room().size() < needed) return output.TooSmall(needed);
  Digits digits{};
  const WipeAtExit wipeDigits(digits);
  auto place = output.Room().begin();
  for (InputBytes rest = bytes; !rest.empty();) {
    const auto piece = rest.first(std::min(rest.size(), kPiece));
    FastestHexDigits().encode(piece.data(), piece.size(), digits.data());
    place = std::transform(digits.begin(), digits.begin() + kDigits * piece.size(), place,
                           [](char16_t digit) { return static_cast<std::uint8_t>(digit); });
    rest = rest.subspan(piece.size());
  }
  *place = 0;
  return output.Finish(needed);
}

Outcome Decode(InputBytes text, Output& output) {
  if (text.size() % kDigits != 0) return check::kHexLength;
  const std::size_t needed = text.size() / kDigits;
  if (output.Room().size() < needed) return output.TooSmall(needed);
  Digits digits{};
  const WipeAtExit wipeDigits(digits);
  for (std::size_t done = 0; done < needed;) {
    const std::size_t count = std::min(needed - done, kPiece);
    const auto piece = text.subspan(kDigits * done, kDigits * count);
    std::copy(piece.begin(), piece.end(), digits.begin());
    FastestHexDigits().decode(digits.data(), count, &output.Room()[done]);
    done += count;
  }
  return output.Finish(needed);
}

}  // namespace
}  // namespace latchkey::c

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts

int32_t latchkey_hex_encode(const uint8_t* input, size_t input_length, char* text,
                            size_t* text_length, latchkey_failure* failure) {
  const Memory bytes(input, input_length);
  Output output(text, text_length);
  return Call(failure, latchkey::trap::kConvertStringToHex, [&]() -> Outcome {
    if (!output.IsGood({bytes})) return LATCHKEY_BAD_ARGUMENT;
    return Encode(bytes.Bytes(), output);
  });
}

int32_t latchkey_hex_decode(const char* text, size_t text_length, uint8_t* output,
                            size_t* output_length, latchkey_failure* failure) {
  const Memory digits(text, text_length);
  Output bytes(output, output_length);
  return Call(failure, latchkey::trap::kConvertStringFromHex, [&]() -> Outcome {
    if (!bytes.IsGood({digits})) return LATCHKEY_BAD_ARGUMENT;
    return Decode(digits.Bytes(), bytes);
  });
}
