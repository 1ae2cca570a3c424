#include "platform/linux/number_text.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace latchkey::platform {
namespace {

// White space as in Automation's reader: every Unicode space.
bool IsSpace(char16_t c) {
  return (c >= 9 && c <= 13) || c == ' ' || c == 0x85 || c == 0xA0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
         c == 0x3000;
}

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

class Scanner {
 public:
  explicit Scanner(TextView text) : rest_(text) {}

  std::optional<ScannedNumber> Scan() {
    ReadPrefix();
    if (!(StartsRadix() ? ReadRadixDigits() : ReadDecimal())) return std::nullopt;
    ReadSuffix();
    if (!rest_.empty() || (open_ && !number_.negative)) return std::nullopt;
    if (number_.radix != 10) number_.negative = false;
    return std::move(number_);
  }

 private:
  [[nodiscard]] char16_t Next() const { return rest_.empty() ? u'\0' : rest_.front(); }

  bool Take(char16_t wanted) {
    if (Next() != wanted || rest_.empty()) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool TakeSpace() { return IsSpace(Next()) && Take(Next()); }

  static bool Once(bool& flag) { return !std::exchange(flag, true); }

  // Each sign at most once.
  void ReadPrefix() {
    for (;;) {
      if (TakeSpace()) continue;
      if (Next() == u'+' && Once(plus_) && Take(u'+')) continue;
      if (Next() == u'-' && Once(minus_) && Take(u'-')) continue;
      if (Next() == u'$' && Once(dollar_) && Take(u'$')) continue;
      if (Next() == u'(' && Once(open_) && Take(u'(')) continue;
      break;
    }
    number_.negative = minus_;
  }

  // Each sign any number of times, unless it is in front.
  void ReadSuffix() {
    for (;;) {
      if (TakeSpace() || (!plus_ && Take(u'+'))) continue;
      if (number_.radix == 10 && (Take(u',') || Take(u'$'))) continue;
      if (!(!minus_ && Take(u'-')) && !(open_ && Take(u')'))) return;
      number_.negative = true;
    }
  }

  [[nodiscard]] bool StartsRadix() const {
    return !dollar_ && rest_.size() >= 2 && rest_[0] == u'&' &&
           TextView(u"HhOo").find(rest_[1]) != TextView::npos;
  }

  bool ReadRadixDigits() {
    const bool hexadecimal = rest_[1] == u'H' || rest_[1] == u'h';
    number_.radix = hexadecimal ? 16 : 8;
    const TextView allowed = hexadecimal ? u"0123456789ABCDEFabcdef" : u"01234567";
    rest_.remove_prefix(2);
    const std::size_t count = std::min(rest_.find_first_not_of(allowed), rest_.size());
    for (const char16_t digit : rest_.substr(0, count)) AppendDigit(static_cast<char>(digit));
    rest_.remove_prefix(count);
    return count > 0;
  }

  // A comma after the exponent returns to the digits before it, as in Automation, so that both
  // systems accept the same texts.
  bool ReadDecimal() {
    if (Next() == u',') return false;
    bool afterPoint = false;
    bool afterExponent = false;
    for (;; rest_.remove_prefix(1)) {
      if (IsDigit(Next())) {
        AddDigit(static_cast<char>(Next()), afterPoint);
      } else if (Next() == u'.' && !afterPoint && !afterExponent) {
        afterPoint = true;
      } else if ((Next() == u'e' || Next() == u'E') && !dollar_ && Once(afterExponent)) {
        if (!ReadExponent()) return false;
        if (Next() != u',') break;
      } else if (Next() != u',') {
        break;
      }
    }
    DropTrailingZeros();
    return anyDigit_;
  }

  void AddDigit(char digit, bool afterPoint) {
    anyDigit_ = true;
    AppendDigit(digit);
    if (afterPoint) --number_.scale;
  }

  void AppendDigit(char digit) {
    if (digit != '0' || !number_.digits.empty()) number_.digits.push_back(digit);
  }

  void DropTrailingZeros() {
    for (; !number_.digits.empty() && number_.digits.back() == '0'; ++number_.scale) {
      number_.digits.pop_back();
    }
  }

  // Reads from the letter on. Signs and commas may precede its first digit.
  bool ReadExponent() {
    bool negative = false;
    do {
      negative = negative || Next() == u'-';
      rest_.remove_prefix(1);
    } while (Next() == u'+' || Next() == u'-' || Next() == u',');
    if (!IsDigit(Next())) return false;
    std::int64_t exponent = 0;
    constexpr std::int64_t kBeyondAnyNumber = std::numeric_limits<std::int64_t>::max() / 32;
    for (; IsDigit(Next()); rest_.remove_prefix(1)) {
      exponent = std::min(exponent * 10 + (Next() - u'0'), kBeyondAnyNumber);
    }
    number_.scale += negative ? -exponent : exponent;
    return true;
  }

  TextView rest_;
  ScannedNumber number_;
  bool plus_ = false;  // a leading plus, as the next two
  bool minus_ = false;
  bool dollar_ = false;
  bool open_ = false;  // after an opening parenthesis
  bool anyDigit_ = false;
};

}  // namespace

std::optional<ScannedNumber> ScanNumber(TextView text) { return Scanner(text).Scan(); }

}  // namespace latchkey::platform
