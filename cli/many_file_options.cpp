#include "cli/many_file_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/alternatives.h"
#include "cli/failure.h"
#include "cli/platform/file_state.h"

namespace latchkey::cli {

bool ManyFileOptions::AreChosen(const std::string& command, bool replaces) const {
  const bool hasPlace = folder || !suffix.empty();
  if (!hasPlace) {
    if (inputs.size() > 1 || list || recursive) {
      throw WrongUsage("several files need --output-dir or --suffix",
                       "run 'latchkey " + command + " --help' for the options");
    }
    if (skipExisting || keepTimes || !sync.empty()) {
      throw WrongUsage("--skip-existing, --keep-times and --sync need --output-dir or --suffix");
    }
    return false;
  }
  if (inputs.empty() && !list) {
    throw WrongUsage("--output-dir and --suffix need the names of files",
                     "name them, or use --files0-from");
  }
  if (std::ranges::find(inputs, "-") != inputs.end()) {
    throw WrongUsage("standard input has no name for its output", "use --output");
  }
  if (std::ranges::any_of(suffix, IsSeparator)) {
    throw WrongUsage("--suffix contains a separator of folders");
  }
  if (folder && folder->empty()) throw WrongUsage("--output-dir is empty");
  if (skipExisting && replaces) throw WrongUsage("--skip-existing excludes --force");
  return true;
}

void AddManyFileOptions(CLI::App& command, ManyFileOptions& options) {
  CLI::Option* const output = command.get_option("--output");
  CLI::Option* const inputs =
      command.add_option("IN", options.inputs, "Read these files (default: standard input)")
          ->type_name("");
  command
      .add_option("--files0-from", options.list,
                  "Read the names of inputs from this file, each ended by NUL; - is standard input")
      ->type_name("FILE")
      ->excludes(inputs)
      ->excludes(output);
  command
      .add_option("--output-dir", options.folder,
                  "Write an output for each input into this folder, which is made if missing")
      ->type_name("DIR")
      ->excludes(output);
  command
      .add_option("--suffix", options.suffix,
                  "Add this to the outputs' names (encrypt), or remove it (decrypt)")
      ->type_name(".EXT")
      ->excludes(output);
  command.add_flag("-r,--recursive", options.recursive,
                   "Read the files in folders, and recreate the folders below DIR");
  command.add_flag("--skip-existing", options.skipExisting,
                   "Leave out inputs whose output exists, with any contents");
  command.add_flag("--keep-times", options.keepTimes, "Give each output the times of its input");
  AddChoice(command, "--sync", options.sync,
            "Flush outputs to the disk one by one (each), in groups (end), or never (default: end)",
            {"each", "end", "never"});
}

}  // namespace latchkey::cli
