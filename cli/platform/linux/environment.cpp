#include "cli/platform/environment.h"

#include <cstdlib>
#include <cstring>

namespace latchkey::cli {

std::optional<WipedBytes> TakeVariable(const std::string& name) {
  char* const value = std::getenv(name.c_str());
  if (value == nullptr) return std::nullopt;
  const std::size_t length = std::strlen(value);
  WipedBytes taken(value, value + length);
  SecureWipe(value, length);
  ::unsetenv(name.c_str());
  return taken;
}

}  // namespace latchkey::cli
