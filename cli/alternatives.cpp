#include "cli/alternatives.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace latchkey::cli {
namespace {

enum class Numbers { Refused, Taken };

// In lower case, without hyphens.
std::string Plain(const std::string& word) {
  std::string plain;
  for (const char letter : word) {
    if (letter == '-') continue;
    plain += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return plain;
}

CLI::Validator Meaning(const std::vector<std::string>& words, Numbers numbers) {
  const auto replace = [words, numbers](std::string& value) -> std::string {
    for (std::size_t i = 0; i < words.size(); ++i) {
      const bool isNumber = numbers == Numbers::Taken && value == std::to_string(i + 1);
      if (!isNumber && Plain(words[i]) != Plain(value)) continue;
      value = words[i];
      return {};
    }
    return value + " not in {" + Alternatives(words) + "}";
  };
  return {replace, "", "one of several words"};
}

}  // namespace

CLI::Validator OneOf(const std::vector<std::string>& words) {
  return Meaning(words, Numbers::Refused);
}

CLI::Validator OneOfNumbered(const std::vector<std::string>& words) {
  return Meaning(words, Numbers::Taken);
}

std::string Alternatives(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += '|';
    text += word;
  }
  return text;
}

}  // namespace latchkey::cli
