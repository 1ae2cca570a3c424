// The C interface: hexadecimal text.
#include "base/hex_converter.h"
#include "c/call.h"
#include "crypto/hexadecimal.h"

namespace latchkey::c {
namespace {

constexpr std::size_t kDigits = static_cast<std::size_t>(kDigitsPerByte);

Outcome Encode(InputBytes bytes, Output& output) {
  const std::size_t needed = kDigits * bytes.size() + 1;
  if (output.Room().size() < needed) return output.TooSmall(needed);
  HexConverter().Encode(bytes, output.Room().data());
  output.Room()[needed - 1] = 0;
  return output.Finish(needed);
}

Outcome Decode(InputBytes text, Output& output) {
  if (text.size() % kDigits != 0) return check::kHexLength;
  const std::size_t needed = text.size() / kDigits;
  if (output.Room().size() < needed) return output.TooSmall(needed);
  HexConverter().Decode(text, output.Room().data());
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
