// Variants that come from clients, who may fill them with anything.
#pragma once

#include <array>

#include "com/windows/automation_owners.h"
#include "com/windows/automation_prelude.h"
#include "platform/variant_text.h"

namespace latchkey::com {

// A variant of the component's own. What it holds may be secret and is wiped before it is freed.
class OwnedVariant {
 public:
  OwnedVariant() noexcept = default;
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant();

  [[nodiscard]] VARIANT& Get() noexcept { return value_; }

  // Gives the value away.
  [[nodiscard]] VARIANT Release() noexcept;

 private:
  VARIANT value_ = {};  // VT_EMPTY
};

// The variant that a variant passed by reference stands for, or the variant itself; null when a
// reference is null or leads round in a circle. Scripts pass their variables in this way.
[[nodiscard]] VARIANT* LookThrough(VARIANT* value) noexcept;

// A variant that passes `value`, whose plain type is `type`, by reference; VT_VARIANT stands for
// the variant itself.
[[nodiscard]] VARIANT ReferenceTo(VARIANT& value, VARTYPE type) noexcept;

// Converts to another type as Automation does, Booleans to the words True and False. `source` may
// hold a reference to a plain type, not a null one. Raises nothing; the HRESULT is that of
// VariantChangeTypeEx, or DISP_E_TYPEMISMATCH for every other refusal.
[[nodiscard]] HRESULT ConvertVariant(VARIANT& target, VARIANT& source, LCID locale,
                                     VARTYPE type) noexcept;

// The text form, in that locale, of a value that is neither text nor Null; false, with `text` left
// empty, for one that is. Raises TypeMismatch for a value without a text form, Overflow and
// OutOfMemory as they happen.
[[nodiscard]] bool ConvertToText(OwnedVariant& text, VARIANT& source, LCID locale);

// What StringToByteArray gets to see of a client's variant: text as it stands, Null, and of
// anything else the text form in the user's locale. A late-bound call has made that text already,
// in its caller's locale.
class VariantText {
 public:
  // Raises what ConvertToText raises.
  explicit VariantText(VARIANT* value);

  // Valid for as long as both this and the client's variant live.
  [[nodiscard]] const Variant& Value() const noexcept { return value_; }

 private:
  OwnedVariant converted_;
  Variant value_;
};

}  // namespace latchkey::com
