// Hexadecimal decoding: never more bytes than pairs, and every text comes back from its digits.
#include <algorithm>

#include "com/cls_main.h"
#include "crypto/cls_crypto_api.h"
#include "fuzz/input.h"

using namespace latchkey;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const clsMain main;
  const clsCryptoAPI api;
  fuzz::Input input(data, size);
  const Text text = input.TakeText();
  const Text decoded = api.ConvertStringFromHex(text);
  fuzz::Require(decoded.size() <= text.size() / 2);
  fuzz::Require(text.size() % 2 == 0 || main.ErrorLocationID() == 727);

  const Text digits = api.ConvertStringToHex(decoded);
  fuzz::Require(digits.size() == decoded.size() * 2);
  fuzz::Require(api.ConvertStringFromHex(digits) == decoded);

  if (std::any_of(text.begin(), text.end(), [](char16_t letter) { return letter >= 0x80; }))
    return 0;
  const std::size_t kept = text.find_last_not_of(u' ') + 1;
  fuzz::Require(api.ConvertStringFromHex(api.ConvertStringToHex(text)) == text.substr(0, kept));
  return 0;
}
