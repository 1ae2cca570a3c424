// The output of a command's data.
#pragma once

#include <string>

#include "cli/platform/stream_name.h"

namespace CLI {
class App;
}

namespace latchkey::cli {

struct OutputOptions {
  std::string file = "-";  // "-" is standard output
  bool force = false;      // replaces an existing file

  [[nodiscard]] bool IsStandardOutput() const { return cli::IsStandardOutput(file); }
};

void AddOutputOptions(CLI::App& command, OutputOptions& options);

// Whether a command would write its data to standard output, judging by the arguments parsed so
// far, valid or not. False for commands without these options.
[[nodiscard]] bool WritesDataToStandardOutput(const CLI::App& command);

}  // namespace latchkey::cli
