// The source of a command's password. The password is never on the command line, which every
// process of the machine can read.
#pragma once

#include <optional>
#include <string>

#include "base/secure_memory.h"
#include "cli/password_text.h"

namespace CLI {
class App;
}

namespace latchkey::cli {

struct PasswordOptions {
  std::optional<std::string> file;  // "-" is standard input
  std::optional<std::string> variable;
  std::optional<int> descriptor;
  std::string encoding;  // a name of TextEncodingNames, "bytes", or empty if none is named
  bool exact = false;    // use all lines of a file or descriptor, with their ends
  bool appendNul = false;
  bool builtIn = false;
  bool none = false;
  bool verbose = false;

  // Whether an encoding is named, to which the password is converted.
  [[nodiscard]] bool NamesEncoding() const noexcept {
    return !encoding.empty() && encoding != kBytesEncoding;
  }
};

// Raises CommandError (wrong usage) if the password and the data of `input` are read from the same
// descriptor.
void RequireOwnSource(const PasswordOptions& options, const std::string& input);

// Adds the options, which exclude each other.
void AddPasswordOptions(CLI::App& command, PasswordOptions& options);

enum class Prompt { Once, Twice };

// Reads the password and converts it to the named encoding; with none, returns the bytes unchanged.
// Drops one line end (LF or CR LF) at the end of a file or descriptor unless `exact` is set. If no
// option names a source, asks on the terminal, twice with Twice.
//
// Raises CommandError if the source is missing, the two passwords differ, the password is empty
// (unless `none` is set), has several lines (unless `exact` is set), is not text in the named
// encoding, or was typed with non-ASCII characters and no encoding is named.
[[nodiscard]] WipedBytes ReadPassword(const PasswordOptions& options, Prompt prompt);

// Reads the password in each form that a program may have used, also with a zero character at the
// end: in the named encoding or, with none, in all encodings of AllForms.
[[nodiscard]] std::vector<EncodedPassword> ReadPasswordForms(const PasswordOptions& options);

// Advice if decryption fails: to name the encoding of a password that is not ASCII. Empty if the
// password is ASCII or an encoding is named.
[[nodiscard]] std::string EncodingHint(const PasswordOptions& options,
                                       std::span<const std::uint8_t> password);

}  // namespace latchkey::cli
