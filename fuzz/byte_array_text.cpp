// Byte arrays of any shape as text, and text as byte arrays.
#include <cstdint>

#include "com/cls_main.h"
#include "crypto/cls_crypto_api.h"
#include "diagnostics/fault.h"
#include "fuzz/input.h"

using namespace latchkey;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const clsMain main;
  const clsCryptoAPI api;
  fuzz::Input input(data, size);
  const auto dimensions = static_cast<std::uint16_t>(input.Take<std::uint8_t>() % 4);
  const std::int32_t lowerBound = input.Take<std::int8_t>();
  const auto elements = input.TakeRest();
  const auto upperBound = static_cast<std::int32_t>(lowerBound + std::ssize(elements) - 1);
  const ByteArray array = ByteArray::WithShape(dimensions, lowerBound, upperBound, elements);
  const bool readable = dimensions == 1 && lowerBound <= 0 && upperBound >= 0;
  try {
    const Text text = api.ByteArrayToString(array);
    fuzz::Require(readable && text.size() <= elements.size());
    fuzz::Require(api.ByteArrayToString(api.StringToByteArray(TextView(text))) == text);
  } catch (const Fault& fault) {
    fuzz::Require(!readable && fault.Number() == 9);
  }
  return 0;
}
