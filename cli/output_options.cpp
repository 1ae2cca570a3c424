#include "cli/output_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <vector>

namespace latchkey::cli {

void AddOutputOptions(CLI::App& command, OutputOptions& options) {
  command.add_option("-o,--output", options.file, "Write to this file (default: standard output)")
      ->type_name("OUT");
  command.add_flag("-f,--force", options.force,
                   "Replace an existing OUT, or write to a device or pipe");
}

bool WritesDataToStandardOutput(const CLI::App& command) {
  const CLI::Option* const option = command.get_option_no_throw("--output");
  if (option == nullptr) return false;
  for (const char* const name : {"--output-dir", "--suffix"}) {
    const CLI::Option* const other = command.get_option_no_throw(name);
    if (other != nullptr && other->count() > 0) return false;
  }
  const std::vector<std::string>& names = option->results();
  return names.empty() || std::any_of(names.begin(), names.end(), IsStandardOutput);
}

}  // namespace latchkey::cli
