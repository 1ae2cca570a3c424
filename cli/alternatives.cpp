#include "cli/alternatives.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace latchkey::cli {
namespace {

// In lower case, without hyphens.
std::string Plain(const std::string& word) {
  std::string plain;
  for (const char letter : word) {
    if (letter == '-') continue;
    plain += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return plain;
}

// The parser's own join truncates when memory runs out.
std::string Alternatives(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += '|';
    text += word;
  }
  return text;
}

}  // namespace

CLI::Validator OneOf(const std::vector<std::string>& words, Numbers numbers) {
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

CLI::Option* AddChoice(CLI::App& command, const char* name, std::string& value,
                       const char* description, const std::vector<std::string>& words,
                       Numbers numbers) {
  return command.add_option(name, value, description)
      ->transform(OneOf(words, numbers))
      ->type_name(Alternatives(words));
}

}  // namespace latchkey::cli
