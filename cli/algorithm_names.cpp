#include "cli/algorithm_names.h"

#include <algorithm>

namespace latchkey::cli {
namespace {

const std::string& NameAt(const std::vector<std::string>& names, std::int32_t number) {
  return names.at(static_cast<std::size_t>(number) - 1);
}

}  // namespace

const std::vector<std::string>& HashNames() {
  static const std::vector<std::string> names{"md5", "md4", "md2", "sha1"};
  return names;
}

const std::vector<std::string>& CipherNames() {
  static const std::vector<std::string> names{"rc4", "rc2", "des", "3des", "3des-112"};
  return names;
}

const std::vector<std::string>& ProviderNames() {
  static const std::vector<std::string> names{"base", "enhanced"};
  return names;
}

const std::string& HashName(std::int32_t number) { return NameAt(HashNames(), number); }

const std::string& CipherName(std::int32_t number) { return NameAt(CipherNames(), number); }

const std::string& ProviderName(bool enhanced) { return ProviderNames().at(enhanced ? 1 : 0); }

std::int16_t NumberOf(const std::string& name, std::span<const std::string> names) {
  return static_cast<std::int16_t>(std::find(names.begin(), names.end(), name) - names.begin() + 1);
}

}  // namespace latchkey::cli
