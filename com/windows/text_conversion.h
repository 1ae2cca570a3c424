// Conversions of text from and to clients.
#pragma once

#include "com/windows/automation_prelude.h"
#include "latchkey/types.h"

namespace latchkey::com {

// The characters of a client's string, not copied. A null string is the empty text; the odd last
// byte of a string of bytes is ignored.
[[nodiscard]] TextView ViewOf(BSTR text) noexcept;

// A string for a client, who frees it. Wipes `text` in place, so that the client has the only copy.
// Raises bad_alloc.
[[nodiscard]] BSTR ToBstr(Text&& text);

[[nodiscard]] constexpr VARIANT_BOOL ToVariantBool(bool value) noexcept {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}

// Any value but 0 is true.
[[nodiscard]] constexpr bool IsTrue(VARIANT_BOOL value) noexcept { return value != VARIANT_FALSE; }

}  // namespace latchkey::com
