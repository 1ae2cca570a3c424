// DigitsOnly, and the reading of numbers.
#include <algorithm>

#include "crypto/seed/digits_only.h"
#include "crypto/value_text.h"
#include "latchkey/cls_main.h"
#include "latchkey/fault.h"
#include "tests/system/fuzz/input.h"

using latchkey::clsMain;
using latchkey::DigitsOnly;
using latchkey::Fault;
using latchkey::NumberIn;
using latchkey::Text;
using latchkey::TextView;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;
using latchkey::platform::IsNumericText;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const clsMain main;
  Input input(data, size);
  const Text text = input.TakeText();
  const bool numeric = IsNumericText(text);
  try {
    static_cast<void>(NumberIn(text));
    Require(numeric);
  } catch (const Fault& fault) {
    Require(fault.Number() == 6 || (fault.Number() == 13 && !numeric));
  }
  const Text digits = DigitsOnly(TextView(text));
  const auto isDropped = [](char16_t character) {
    return TextView(u".,E-+").find(character) != TextView::npos;
  };
  Require(std::none_of(digits.begin(), digits.end(), isDropped));
  Require(std::all_of(text.begin(), text.end(), isDropped) == digits.empty());
  return 0;
}
