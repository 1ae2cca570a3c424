#include "cli/shielded_argument.h"

#include <CLI/CLI.hpp>

namespace latchkey::cli {

void Shield(std::string& argument) {
  const bool isList = argument.starts_with('[') && argument.ends_with(']');
  if (isList || argument == "++") argument.push_back('\0');
}

std::string Unshielded(std::string value) {
  if (value.ends_with('\0')) value.pop_back();
  return value;
}

void UnshieldValues(CLI::App& parser) {
  for (CLI::App* const command : parser.get_subcommands(nullptr)) {
    UnshieldValues(*command);
    for (CLI::Option* const option : command->get_options()) {
      if (option->get_expected_max() > 0) option->transform(Unshielded);
    }
  }
}

}  // namespace latchkey::cli
