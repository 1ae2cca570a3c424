// Where a command's data goes.
#pragma once

#include <string>

#include "platform/command/stream_name.h"

namespace CLI {
class App;
}

namespace latchkey::cli {

struct OutputOptions {
  std::string file = "-";  // "-" is standard output
  bool force = false;      // an existing file gives way

  [[nodiscard]] bool IsStandardOutput() const { return platform::IsStandardOutput(file); }
};

void AddOutputOptions(CLI::App& command, OutputOptions& options);

}  // namespace latchkey::cli
