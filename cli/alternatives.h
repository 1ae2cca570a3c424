// Options whose value is one of a few words.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace latchkey::cli {

// The check that a value is one of the words.
[[nodiscard]] inline CLI::Validator OneOf(const std::vector<std::string>& words) {
  return CLI::IsMember(words).description("");
}

// How help shows them: "md5|md4".
[[nodiscard]] inline std::string Alternatives(const std::vector<std::string>& words) {
  return CLI::detail::join(words, "|");
}

}  // namespace latchkey::cli
