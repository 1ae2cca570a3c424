// Byte arrays of any shape as text, and text as byte arrays.
#include <cstdint>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "latchkey/fault.h"
#include "tests/system/fuzz/input.h"

using latchkey::ByteArray;
using latchkey::clsCryptoAPI;
using latchkey::clsMain;
using latchkey::Fault;
using latchkey::Text;
using latchkey::TextView;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const clsMain main;
  const clsCryptoAPI api;
  Input input(data, size);
  const auto dimensions = static_cast<std::uint16_t>(input.Take<std::uint8_t>() % 4);
  // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): a number, not a character
  const std::int32_t lowerBound = input.Take<std::int8_t>();
  const auto elements = input.TakeRest();
  const auto upperBound = static_cast<std::int32_t>(lowerBound + std::ssize(elements) - 1);
  const ByteArray array = ByteArray::WithShape(dimensions, lowerBound, upperBound, elements);
  const bool readable = dimensions == 1 && lowerBound <= 0 && upperBound >= 0;
  try {
    const Text text = api.ByteArrayToString(array);
    Require(readable && text.size() <= elements.size());
    Require(api.ByteArrayToString(api.StringToByteArray(TextView(text))) == text);
  } catch (const Fault& fault) {
    Require(!readable && fault.Number() == 9);
  }
  return 0;
}
