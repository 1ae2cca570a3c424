// Options whose value is one of a few words.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace latchkey::cli {

// Checks that a value is one of the words.
[[nodiscard]] inline CLI::Validator OneOf(const std::vector<std::string>& words) {
  return CLI::IsMember(words).description("");
}

// The words as help shows them: "md5|md4". The parser's own join truncates when memory runs out.
[[nodiscard]] inline std::string Alternatives(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += '|';
    text += word;
  }
  return text;
}

}  // namespace latchkey::cli
