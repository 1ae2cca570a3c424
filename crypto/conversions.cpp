// clsCryptoAPI's conversions between text, byte arrays and hexadecimal.
#include <utility>

#include "base/checked_arithmetic.h"
#include "crypto/byte_array_text.h"
#include "crypto/cls_crypto_api.h"
#include "crypto/hexadecimal.h"
#include "crypto/text_codec.h"
#include "crypto/value_text.h"
#include "diagnostics/error_trap.h"
#include "platform/large_memory.h"

namespace latchkey {
namespace {

// The codes of a text. Raises Overflow for a text too long for a byte array.
ByteArray CodesOf(TextView text) {
  static_cast<void>(NarrowTo<std::int32_t>(text.size()));
  InlineBytes codes(text.size() + 1);
  platform::ExpectFilling(codes.data(), codes.size());
  EncodeText(text, codes.All().first(text.size()));
  return ByteArray::WithTrailingZero(std::move(codes), text.size());
}

}  // namespace

Text clsCryptoAPI::ByteArrayToString(const ByteArray& arByte) const {
  Text result;
  DecodeBytes(TextBytesOf(arByte), result);
  return result;
}

ByteArray clsCryptoAPI::StringToByteArray(const Variant& varInput) const {
  if (const auto* text = std::get_if<TextView>(&varInput)) return CodesOf(*text);
  return CodesOf(TextOfValue(varInput));
}

Text clsCryptoAPI::ConvertStringFromHex(TextView strHex) const {
  Text result;
  RunTrapped(trap::kConvertStringFromHex, [&] {
    if (strHex.size() % kDigitsPerByte != 0) {
      RecordApplicationFailure(check::kHexLength);
      return;
    }
    DecodeHexToText(strHex, result);
  });
  return result;
}

Text clsCryptoAPI::ConvertStringToHex(TextView strInput, bool /*blnRetUppercase*/) const {
  Text result;
  RunTrapped(trap::kConvertStringToHex, [&] { EncodeHexOfText(strInput, result); });
  return result;
}

void clsCryptoAPI::ConvertCodesToHex(std::span<const std::uint8_t> codes, Text& result) {
  RunTrapped(trap::kConvertStringToHex, [&] { EncodeHex(codes, result); });
}

}  // namespace latchkey
