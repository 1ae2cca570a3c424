// Options for many files in one run of encrypt or decrypt.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace latchkey::cli {

struct ManyFileOptions {
  std::vector<std::string> inputs;
  std::optional<std::string> list;    // a file of names, each ended by NUL; "-" is standard input
  std::optional<std::string> folder;  // the outputs' folder; nothing: that of each input
  std::string suffix;                 // that encrypt adds to a name and decrypt removes
  bool recursive = false;
  bool skipExisting = false;
  bool keepTimes = false;
  std::string sync;  // "each", "end" or "never"; empty: the default, "end"

  // Whether the run is one of many files. Raises CommandError (wrong usage) for options that such a
  // run lacks, or that only such a run has. `command` is its name for hints.
  [[nodiscard]] bool AreChosen(const std::string& command, bool replaces) const;
};

// Adds the inputs and --files0-from, --output-dir, --suffix, --recursive, --skip-existing,
// --keep-times and --sync. Requires --output.
void AddManyFileOptions(CLI::App& command, ManyFileOptions& options);

}  // namespace latchkey::cli
