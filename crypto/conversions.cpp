// clsCryptoAPI's conversions between text, byte arrays and hexadecimal.
#include <variant>

#include "crypto/byte_array_text.h"
#include "crypto/crypto_api_state.h"
#include "crypto/hexadecimal.h"
#include "crypto/text_codec.h"
#include "crypto/value_text.h"
#include "diagnostics/error_trap.h"

namespace latchkey {

Text clsCryptoAPI::ByteArrayToString(const ByteArray& arByte) const {
  Text result;
  DecodeBytes(TextBytesOf(arByte.TextElements()), result);
  return result;
}

ByteArray clsCryptoAPI::StringToByteArray(const Variant& varInput) const {
  const auto* text = std::get_if<TextView>(&varInput);
  return (text != nullptr ? ArrayOfText(*text) : ArrayOfText(TextOfValue(varInput))).ToByteArray();
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

void CryptoApiState::ConvertCodesToHex(std::span<const std::uint8_t> codes, Text& result) {
  RunTrapped(trap::kConvertStringToHex, [&] { EncodeHex(codes, result); });
}

}  // namespace latchkey
