#include "cli/output_options.h"

#include <CLI/CLI.hpp>

namespace latchkey::cli {

void AddOutputOptions(CLI::App& command, OutputOptions& options) {
  command.add_option("-o,--output", options.file, "Write to a file (standard output)")
      ->type_name("OUT");
  command.add_flag("-f,--force", options.force, "Replace an existing OUT");
}

}  // namespace latchkey::cli
