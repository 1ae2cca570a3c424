#include "cli/platform/environment.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "cli/platform/linux/locale_text.h"

namespace latchkey::cli {

std::optional<WipedBytes> TakeVariable(const std::string& name, TextForm form) {
  char* const value = std::getenv(name.c_str());
  if (value == nullptr) return std::nullopt;
  const std::size_t length = std::strlen(value);
  WipedBytes taken(value, value + length);
  SecureWipe(value, length);
  ::unsetenv(name.c_str());
  return form == TextForm::Utf8 ? Utf8OfLocale(std::move(taken), name) : taken;
}

}  // namespace latchkey::cli
