// Hexadecimal decoding: never more bytes than pairs, and every text is decoded from its digits.
#include <algorithm>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/system/fuzz/input.h"

using latchkey::clsCryptoAPI;
using latchkey::clsMain;
using latchkey::Text;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const clsMain main;
  const clsCryptoAPI api;
  Input input(data, size);
  const Text text = input.TakeText();
  const Text decoded = api.ConvertStringFromHex(text);
  Require(decoded.size() <= text.size() / 2);
  Require(text.size() % 2 == 0 || main.ErrorLocationID() == 727);

  const Text digits = api.ConvertStringToHex(decoded);
  Require(digits.size() == decoded.size() * 2);
  Require(api.ConvertStringFromHex(digits) == decoded);

  if (std::any_of(text.begin(), text.end(), [](char16_t letter) { return letter >= 0x80; }))
    return 0;
  const std::size_t kept = text.find_last_not_of(u' ') + 1;
  Require(api.ConvertStringFromHex(api.ConvertStringToHex(text)) == text.substr(0, kept));
  return 0;
}
