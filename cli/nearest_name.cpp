#include "cli/nearest_name.h"

#include <algorithm>
#include <numeric>

namespace latchkey::cli {
namespace {

std::size_t Changes(const std::string& from, const std::string& to) {
  // For the letters of `from` read so far: the changes to each beginning of `to`.
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : from) {
    std::size_t diagonal = row[0]++;
    for (std::size_t i = 0; i < to.size(); ++i) {
      const std::size_t replaced = diagonal + (letter == to[i] ? 0 : 1);
      diagonal = row[i + 1];
      row[i + 1] = std::min({replaced, row[i] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string NearestName(const std::string& word, const std::vector<std::string>& names) {
  std::string nearest;
  std::size_t fewest = word.size() / 3 + 1;
  for (const std::string& name : names) {
    const std::size_t changes = Changes(word, name);
    if (changes >= fewest) continue;
    fewest = changes;
    nearest = name;
  }
  return nearest;
}

}  // namespace latchkey::cli
