#include "cli/usage_failure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>
#include <vector>

#include "cli/shielded_argument.h"

namespace latchkey::cli {
namespace {

struct Complaint {
  std::string text;
  std::string hint;
};

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

// The name with the smallest edit distance from `word` (V. Levenshtein, 1965: letters inserted,
// removed or replaced); the first of several. Empty if the distance is more than a third of the
// word's letters.
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

std::string DidYouMean(const std::string& name) {
  return name.empty() ? "" : "did you mean " + name + "? ";
}

std::vector<std::string> CommandsOf(const CLI::App& parent) {
  std::vector<std::string> names;
  for (const CLI::App* const command : parent.get_subcommands(nullptr)) {
    names.push_back(command->get_name());
  }
  return names;
}

std::vector<std::string> OptionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

bool IsOption(const std::string& word) { return word.size() > 1 && word.starts_with('-'); }

Complaint UnknownOption(const CLI::App& command, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  return {"no such option: " + name, DidYouMean(NearestName(name, OptionsOf(command)))};
}

// About the first word that the parser did not know; empty if it knew all.
Complaint AboutUnknownWord(const CLI::App& parser, const CLI::App& chosen) {
  std::vector<std::string> words = parser.remaining(true);
  for (std::string& word : words) word = Unshielded(std::move(word));
  const auto option = std::ranges::find_if(words, IsOption);
  if (option != words.end()) return UnknownOption(chosen, *option);
  return words.empty() ? Complaint() : Complaint{"unexpected argument: " + words.front(), ""};
}

std::string FullName(const CLI::App& command) {
  const CLI::App* const parent = command.get_parent();
  return (parent == nullptr ? "" : FullName(*parent) + " ") + command.get_name();
}

}  // namespace

const CLI::App& ChosenCommand(const CLI::App& parser) {
  const auto chosen = parser.get_subcommands();
  return chosen.empty() ? parser : ChosenCommand(*chosen.front());
}

Failure UsageFailure(const CLI::App& parser, const CLI::ParseError& error,
                     const std::string& first) {
  const CLI::App& chosen = ChosenCommand(parser);
  Complaint complaint;
  if (&chosen == &parser && !first.empty() && !IsOption(first)) {
    complaint = {"no such command: " + first, DidYouMean(NearestName(first, CommandsOf(parser)))};
  } else {
    complaint = AboutUnknownWord(parser, chosen);
  }
  if (complaint.text.empty()) complaint.text = error.what();
  return WrongUsage(complaint.text,
                    complaint.hint + "run '" + FullName(chosen) + " --help' for the options")
      .Get();
}

}  // namespace latchkey::cli
