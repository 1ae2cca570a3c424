// The source of a command's password. Never the command line itself, which every process of the
// machine can read.
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

// Raises CommandError (wrong usage) if the password and the data of that input have the same
// descriptor.
void RequireOwnSource(const PasswordOptions& options, const std::string& input);

// Adds the options, which exclude each other.
void AddPasswordOptions(CLI::App& command, PasswordOptions& options);

enum class Prompt { Once, Twice };

// Reads the password, as exact bytes. Drops one line end (LF or CR LF) at the end of a file or
// descriptor unless `exact` is set. Without an option, asks on the terminal, twice with Twice.
// Raises CommandError if the source is missing or the two passwords differ.
[[nodiscard]] WipedBytes ReadPassword(const PasswordOptions& options, Prompt prompt);

}  // namespace latchkey::cli
