// Options whose value is one of a few words.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
class Validator;
}  // namespace CLI

namespace latchkey::cli {

// Whether a word can also be given by its number, counted from 1.
enum class Numbers { Refused, Taken };

// Replaces a value by the word that it means, in any case and with or without hyphens.
[[nodiscard]] CLI::Validator OneOf(const std::vector<std::string>& words,
                                   Numbers numbers = Numbers::Refused);

// Adds an option whose value is one of the words, which help shows as "md5|md4".
CLI::Option* AddChoice(CLI::App& command, const char* name, std::string& value,
                       const char* description, const std::vector<std::string>& words,
                       Numbers numbers = Numbers::Refused);

}  // namespace latchkey::cli
