// Where a command takes its password from. Never from the command line itself, which every process
// of the machine can read.
#pragma once

#include <optional>
#include <string>

#include "base/secure_memory.h"

namespace CLI {
class App;
}

namespace latchkey::cli {

struct PasswordOptions {
  std::optional<std::string> file;  // "-" is standard input
  std::optional<std::string> variable;
  std::optional<int> descriptor;
  bool exact = false;  // keep the line end of a file or descriptor
  bool builtIn = false;
  bool none = false;
};

// Raises CommandError (wrong usage) when the password and the data of that input would come from
// one descriptor.
void RequireOwnSource(const PasswordOptions& options, const std::string& input);

// Adds the options, of which one at most may be given.
void AddPasswordOptions(CLI::App& command, PasswordOptions& options);

enum class Prompt { Once, Twice };

// The password, as exact bytes. A file or descriptor loses one line end (LF or CR LF) from its end
// unless `exact` stands. Without an option it is asked for on the terminal, with Twice two times.
// Raises CommandError when the source is not there or the two differ.
[[nodiscard]] WipedBytes ReadPassword(const PasswordOptions& options, Prompt prompt);

}  // namespace latchkey::cli
