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
  std::optional<std::string> folder;  // the outputs' folder; nothing: the folder of each input
  std::string suffix;                 // encrypt adds it to a name, decrypt removes it
  bool recursive = false;
  bool skipExisting = false;
  bool keepTimes = false;
  std::string sync;  // "each", "end" or "never"; empty: the default, "end"

  // Whether many files are processed in one run. Raises CommandError (wrong usage) if such a run
  // lacks an option, or another run has an option for many files. `command` is the command's name
  // for hints; `replaces` is --force.
  [[nodiscard]] bool AreChosen(const std::string& command, bool replaces) const;
};

// Adds the inputs and --files0-from, --output-dir, --suffix, --recursive, --skip-existing,
// --keep-times and --sync. Requires --output.
void AddManyFileOptions(CLI::App& command, ManyFileOptions& options);

}  // namespace latchkey::cli
