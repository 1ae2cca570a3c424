// The C interface: hexadecimal text of exact bytes.
#include "base/secure_memory.h"
#include "c/call.h"
#include "crypto/hexadecimal.h"

namespace {

using namespace latchkey;  // NOLINT(google-build-using-namespace): all of it is the component's

constexpr std::size_t kDigitsPerByte = 2;

int Encode(InputBytes bytes, Output& output) {
  Text digits;
  const WipeAtExit wipeDigits(digits);
  EncodeHex(bytes, digits);
  const WipedBytes ascii(digits.begin(), digits.end());
  return output.DeliverText({reinterpret_cast<const char*>(ascii.data()), ascii.size()});
}

int Decode(InputBytes text, Output& output) {
  if (text.size() % kDigitsPerByte != 0) return Refuse(check::kHexLength);
  Text digits(text.begin(), text.end());
  const WipeAtExit wipeDigits(digits);
  WipedBytes bytes(text.size() / kDigitsPerByte);
  DecodeHex(digits, bytes);
  return output.Deliver(bytes);
}

}  // namespace

int latchkey_hex_encode(const uint8_t* input, size_t inputLength, char* text, size_t* textLength) {
  const Input bytes(input, inputLength);
  Output output(text, textLength);
  return WithOutput(output, {bytes}, [&] {
    return Trapped(trap::kConvertStringToHex, [&] { return Encode(bytes.Bytes(), output); });
  });
}

int latchkey_hex_decode(const char* text, size_t textLength, uint8_t* output,
                        size_t* outputLength) {
  const Input digits(text, textLength);
  Output bytes(output, outputLength);
  return WithOutput(bytes, {digits}, [&] {
    return Trapped(trap::kConvertStringFromHex, [&] { return Decode(digits.Bytes(), bytes); });
  });
}
