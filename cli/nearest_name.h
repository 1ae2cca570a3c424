// The word that a misspelled one probably means.
#pragma once

#include <string>
#include <vector>

namespace latchkey::cli {

// The name with the fewest changes of one letter (inserted, removed or replaced: V. Levenshtein,
// 1965) from `word`, the first of several; empty if that takes more than a third of its letters.
[[nodiscard]] std::string NearestName(const std::string& word,
                                      const std::vector<std::string>& names);

}  // namespace latchkey::cli
