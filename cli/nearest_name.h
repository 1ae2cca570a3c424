// The word that a misspelled one probably means.
#pragma once

#include <string>
#include <vector>

namespace latchkey::cli {

// The name with the smallest edit distance from `word` (V. Levenshtein, 1965: letters inserted,
// removed or replaced); the first of several. Empty if the distance is more than a third of the
// word's letters.
[[nodiscard]] std::string NearestName(const std::string& word,
                                      const std::vector<std::string>& names);

}  // namespace latchkey::cli
