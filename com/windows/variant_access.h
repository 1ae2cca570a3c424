// Variants from clients, which may have any contents.
#pragma once

#include <array>

#include "com/windows/automation_owners.h"
#include "com/windows/automation_prelude.h"
#include "platform/variant_text.h"

namespace latchkey::com {

// A variant that the component owns. Wipes its value, which may be secret, before freeing it.
class OwnedVariant {
 public:
  OwnedVariant() noexcept = default;
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant();

  [[nodiscard]] VARIANT& Get() noexcept { return value_; }

  // Releases ownership of the value.
  [[nodiscard]] VARIANT Release() noexcept;

 private:
  VARIANT value_ = {};  // VT_EMPTY
};

// The variant to which a variant passed by reference points, or the variant itself; null if a
// reference is null or circular. Scripts pass their variables in this way.
[[nodiscard]] VARIANT* LookThrough(VARIANT* value) noexcept;

// A variant that passes `value`, whose plain type is `type`, by reference; VT_VARIANT means the
// variant itself.
[[nodiscard]] VARIANT ReferenceTo(VARIANT& value, VARTYPE type) noexcept;

// Converts to another type as Automation does, Booleans to the words True and False. `source` may
// hold a non-null reference to a plain type. Throws nothing; the HRESULT is that of
// VariantChangeTypeEx, or DISP_E_TYPEMISMATCH for every other refusal.
[[nodiscard]] HRESULT ConvertVariant(VARIANT& target, VARIANT& source, LCID locale,
                                     VARTYPE type) noexcept;

// Writes the text form, in that locale, of a value that is neither text nor Null; returns false and
// leaves `text` empty for text and Null. Raises TypeMismatch for a value without a text form,
// Overflow and OutOfMemory.
[[nodiscard]] bool ConvertToText(OwnedVariant& text, VARIANT& source, LCID locale);

// A client's variant as StringToByteArray reads it: text unchanged, Null, and for other values the
// text form in the user's locale. A late-bound call has already made that text, in its caller's
// locale.
class VariantText {
 public:
  // Raises the exceptions of ConvertToText.
  explicit VariantText(VARIANT* value);

  // Valid while both this object and the client's variant live.
  [[nodiscard]] const Variant& Value() const noexcept { return value_; }

 private:
  OwnedVariant converted_;
  Variant value_;
};

}  // namespace latchkey::com
