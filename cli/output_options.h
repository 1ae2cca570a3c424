// The output of a command's data.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "cli/platform/stream_name.h"

namespace CLI {
class App;
}

namespace latchkey::cli {

struct OutputOptions {
  std::string file = "-";  // "-" is standard output
  bool isNamed = false;    // the option was given
  bool force = false;      // replaces an existing file

  [[nodiscard]] bool IsStandardOutput() const { return cli::IsStandardOutput(file); }
};

void AddOutputOptions(CLI::App& command, OutputOptions& options);

// Raises CommandError (wrong usage) if the data would be written to a terminal, unless the user
// chose that with `-o -`. The second form does so only if `bytes` contain control characters other
// than tabs, line ends and form feeds.
void RefuseTerminal(const OutputOptions& options);
void RefuseTerminal(const OutputOptions& options, std::span<const std::uint8_t> bytes);

// Whether a command would write its data to standard output, judging by the arguments parsed so
// far, valid or not. False for commands without these options, and without input: their data is in
// the JSON object.
[[nodiscard]] bool WritesDataToStandardOutput(const CLI::App& command);

}  // namespace latchkey::cli
