// DigitsOnly, and the reading of numbers.
#include <algorithm>

#include "com/cls_main.h"
#include "crypto/digits_only.h"
#include "crypto/value_text.h"
#include "diagnostics/fault.h"
#include "fuzz/input.h"

using namespace latchkey;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const clsMain main;
  fuzz::Input input(data, size);
  const Text text = input.TakeText();
  const bool numeric = platform::IsNumericText(text);
  try {
    static_cast<void>(NumberIn(text));
    fuzz::Require(numeric);
  } catch (const Fault& fault) {
    fuzz::Require(fault.Number() == 6 || (fault.Number() == 13 && !numeric));
  }
  const Text digits = DigitsOnly(TextView(text));
  const auto isDropped = [](char16_t character) {
    return TextView(u".,E-+").find(character) != TextView::npos;
  };
  fuzz::Require(std::none_of(digits.begin(), digits.end(), isDropped));
  fuzz::Require(std::all_of(text.begin(), text.end(), isDropped) == digits.empty());
  return 0;
}
