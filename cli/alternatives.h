// Options whose value is one of a few words.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class Validator;
}  // namespace CLI

namespace latchkey::cli {

// Replaces a value by the word that it means, in any case and with or without hyphens.
[[nodiscard]] CLI::Validator OneOf(const std::vector<std::string>& words);

// The same, or by the word whose number it is, counted from 1.
[[nodiscard]] CLI::Validator OneOfNumbered(const std::vector<std::string>& words);

// The words as help shows them: "md5|md4". The parser's own join truncates when memory runs out.
[[nodiscard]] std::string Alternatives(const std::vector<std::string>& words);

}  // namespace latchkey::cli
