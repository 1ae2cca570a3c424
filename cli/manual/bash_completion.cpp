#include "cli/manual/bash_completion.h"

#include <algorithm>
#include <map>

namespace latchkey::cli {
namespace {

// What stands between the words of the commands. Options whose value is one of a few words offer
// those; every other value is a file.
constexpr const char* kBegin =
    R"(# bash completion for latchkey, made from the commands' own options
_latchkey() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} words=
    COMPREPLY=()
    if (( COMP_CWORD > 1 )); then
        case $previous in
)";

constexpr const char* kMiddle = R"(        esac
        [[ $words ]] && { COMPREPLY=($(compgen -W "$words" -- "$current")); return; }
    fi
    case ${COMP_WORDS[1]} in
)";

constexpr const char* kEnd = R"(    esac
    if (( COMP_CWORD > 1 )) && [[ $current != -* ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
    fi
    COMPREPLY=($(compgen -W "$words" -- "$current"))
} &&
    complete -o filenames -F _latchkey latchkey
)";

std::string OptionWords(const CLI::App& command) {
  std::string words;
  for (const CLI::Option* const option : command.get_options()) {
    for (const std::string& name : option->get_snames()) words += " -" + name;
    for (const std::string& name : option->get_lnames()) words += " --" + name;
  }
  return words.substr(words.empty() ? 0 : 1);
}

// The values of each option that has a few to choose from.
std::map<std::string, std::string> ValueWords(const CLI::App& parser) {
  std::map<std::string, std::string> values;
  for (const CLI::App* const command : parser.get_subcommands(nullptr)) {
    for (const CLI::Option* const option : command->get_options()) {
      std::string words = option->get_type_name();
      if (words.find('|') == std::string::npos) continue;
      std::replace(words.begin(), words.end(), '|', ' ');
      for (const std::string& name : option->get_snames()) values["-" + name] = words;
      for (const std::string& name : option->get_lnames()) values["--" + name] = words;
    }
  }
  return values;
}

std::string Case(const std::string& pattern, const std::string& words, int indent) {
  return std::string(static_cast<std::size_t>(indent), ' ') + pattern + ") words='" + words +
         "' ;;\n";
}

}  // namespace

std::string BashCompletion(const CLI::App& parser) {
  std::string script = kBegin;
  for (const auto& [option, words] : ValueWords(parser)) script += Case(option, words, 12);
  script += kMiddle;
  std::string first = OptionWords(parser);
  for (const CLI::App* const command : parser.get_subcommands(nullptr)) {
    script += Case(command->get_name(), OptionWords(*command), 8);
    first += " " + command->get_name();
  }
  return script + Case("*", first, 8) + kEnd;
}

}  // namespace latchkey::cli
