#include "com/windows/text_conversion.h"

#include <limits>
#include <new>

#include "base/secure_memory.h"

namespace latchkey::com {

static_assert(sizeof(OLECHAR) == sizeof(char16_t));

TextView ViewOf(BSTR text) noexcept {
  return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

BSTR ToBstr(Text&& text) {  // NOLINT(*-rvalue-reference-param-not-moved): wiped, not moved
  const WipeAtExit wipeText(text);
  if (text.size() > std::numeric_limits<UINT>::max()) throw std::bad_alloc();
  auto* const copy = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                       static_cast<UINT>(text.size()));
  if (copy == nullptr) throw std::bad_alloc();
  return copy;
}

}  // namespace latchkey::com
