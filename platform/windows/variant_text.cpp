#include "platform/variant_text.h"

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <cmath>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "base/secure_memory.h"
#include "platform/windows/unique_bstr.h"
#include "platform/windows/wide_text.h"

namespace latchkey::platform {
namespace {

void ThrowUnlessDone(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result)) throw std::invalid_argument("the value has no text");
}

Text TextOf(const UniqueBstr& bstr) {
  const UINT length = SysStringLen(bstr.Get());
  return length > 0 ? Text(bstr.Get(), bstr.Get() + length) : Text();
}

VARIANT VariantOf(const Variant& value) {
  VARIANT result;
  VariantInit(&result);
  std::visit(
      [&result](const auto& held) {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, bool>) {
          result.vt = VT_BOOL;
          result.boolVal = held ? VARIANT_TRUE : VARIANT_FALSE;
        } else if constexpr (std::is_same_v<Held, std::int32_t>) {
          result.vt = VT_I4;
          result.lVal = held;
        } else if constexpr (std::is_same_v<Held, float>) {
          result.vt = VT_R4;
          result.fltVal = held;
        } else if constexpr (std::is_same_v<Held, double>) {
          result.vt = VT_R8;
          result.dblVal = held;
        } else if constexpr (std::is_same_v<Held, Date>) {
          result.vt = VT_DATE;
          result.date = held.days;
        }
      },
      value);
  return result;
}

// Automation reads texts up to their first NUL; a text with a NUL is not a number.
bool HoldsNul(TextView text) { return text.find(u'\0') != TextView::npos; }

}  // namespace

Text TextOfDouble(double value) {
  UniqueBstr text;
  ThrowUnlessDone(VarBstrFromR8(value, LOCALE_USER_DEFAULT, 0, text.Put()));
  return TextOf(text);
}

Text TextOfVariant(const Variant& value) {
  if (std::holds_alternative<Null>(value)) throw std::invalid_argument("Null has no text");
  VARIANT from = VariantOf(value);
  VARIANT to;
  VariantInit(&to);
  ThrowUnlessDone(VariantChangeType(&to, &from, VARIANT_ALPHABOOL, VT_BSTR));
  return TextOf(UniqueBstr(to.bstrVal));
}

NumberFromText ReadNumber(TextView text) {
  if (HoldsNul(text)) return {};
  std::wstring wide = Widened(text);  // the reader takes writable text; wiped, as it may be a seed
  const WipeAtExit wipeWide(wide);
  double value = 0;
  const HRESULT result = VarR8FromStr(wide.data(), LOCALE_USER_DEFAULT, 0, &value);
  // Wine returns infinity for some texts that Windows reports as too large.
  if (result == DISP_E_OVERFLOW || std::isinf(value)) return {NumberReading::Overflow, 0};
  if (FAILED(result)) return {};
  return {NumberReading::Number, value};
}

bool IsNumericText(TextView text) {
  if (HoldsNul(text)) return false;
  std::wstring wide = Widened(text);  // the reader takes writable text; wiped, as it may be a seed
  const WipeAtExit wipeWide(wide);
  std::array<BYTE, 30> digits{};
  NUMPARSE parse{};
  parse.cDig = static_cast<INT>(digits.size());
  parse.dwInFlags = NUMPRS_STD;
  return SUCCEEDED(VarParseNumFromStr(wide.data(), LOCALE_USER_DEFAULT, 0, &parse, digits.data()));
}

}  // namespace latchkey::platform
