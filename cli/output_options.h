// Where a command's data goes.
#pragma once

#include <string>

#include "cli/platform/stream_name.h"

namespace CLI {
class App;
}

namespace latchkey::cli {

struct OutputOptions {
  std::string file = "-";  // "-" is standard output
  bool force = false;      // an existing file gives way

  [[nodiscard]] bool IsStandardOutput() const { return cli::IsStandardOutput(file); }
};

void AddOutputOptions(CLI::App& command, OutputOptions& options);

// Whether the data of a command would go to standard output, by the arguments that the parser has
// come to, right or wrong. False for commands without these options.
[[nodiscard]] bool WritesDataToStandardOutput(const CLI::App& command);

}  // namespace latchkey::cli
