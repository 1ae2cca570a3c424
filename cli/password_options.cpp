#include "cli/password_options.h"

#include <CLI/CLI.hpp>
#include <array>
#include <utility>

#include "cli/failure.h"
#include "cli/platform/environment.h"
#include "cli/platform/input_file.h"
#include "cli/platform/stream_name.h"
#include "cli/platform/terminal.h"
#include "crypto/default_password.h"

namespace latchkey::cli {
namespace {

CommandError Failed(std::string text) {
  Failure failure;
  failure.text = std::move(text);
  return CommandError(std::move(failure));
}

WipedBytes ReadAll(InputFile file) {
  WipedBytes all;
  WipedBytes piece(4096);
  for (;;) {
    const std::size_t count = file.Read(piece);
    all.insert(all.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
    if (count < piece.size()) return all;
  }
}

WipedBytes WithoutLineEnd(WipedBytes text) {
  if (text.empty() || text.back() != '\n') return text;
  text.pop_back();
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

WipedBytes FromFile(InputFile file, bool exact) {
  WipedBytes password = ReadAll(std::move(file));
  return exact ? password : WithoutLineEnd(std::move(password));
}

WipedBytes FromVariable(const std::string& name) {
  std::optional<WipedBytes> value = TakeVariable(name);
  if (!value) throw Failed("environment variable " + name + " is not set");
  return std::move(*value);
}

WipedBytes Ask(const char* prompt) {
  std::optional<WipedBytes> line = ReadHiddenLine(prompt);
  if (line) return std::move(*line);
  throw WrongUsage("no password given, and no terminal to ask for one",
                   "use --password-file, --password-env or --password-fd");
}

WipedBytes FromTerminal(Prompt prompt) {
  WipedBytes password = Ask("Password: ");
  if (prompt == Prompt::Twice && Ask("Password again: ") != password) {
    throw Failed("the two passwords differ");
  }
  return password;
}

WipedBytes BuiltIn() {
  const ShapedBytes password = DefaultPassword();
  const auto text = password.TextElements();
  return {text.begin(), text.end()};
}

int CountSources(const PasswordOptions& options) {
  return (options.file ? 1 : 0) + (options.variable ? 1 : 0) + (options.descriptor ? 1 : 0) +
         (options.builtIn ? 1 : 0) + (options.none ? 1 : 0);
}

}  // namespace

void AddPasswordOptions(CLI::App& command, PasswordOptions& options) {
  const std::array added{
      command
          .add_option("--password-file", options.file,
                      "Read the password from a file; - is standard input; one line end at its end "
                      "is dropped")
          ->type_name("FILE"),
      command
          .add_option("--password-env", options.variable,
                      "Read the password from an environment variable, then wipe it")
          ->type_name("NAME"),
      command
          .add_option("--password-fd", options.descriptor,
                      "Read the password from an open file descriptor")
          ->type_name("N"),
      command.add_flag("--password-exact", options.exact,
                       "Keep a line end at the end of the password"),
      command.add_flag("--default-password", options.builtIn,
                       "Use the component's built-in password"),
      command.add_flag("--no-password", options.none, "Use an empty password")};
  for (CLI::Option* const option : added) option->group("Password");
}

void RequireOwnSource(const PasswordOptions& options, const std::string& input) {
  const std::optional<int> source =
      options.file ? InputDescriptor(*options.file) : options.descriptor;
  if (!source || source != InputDescriptor(input)) return;
  const std::string name =
      *source == 0 ? "standard input" : "descriptor " + std::to_string(*source);
  throw WrongUsage(name + " cannot give both the password and the data");
}

WipedBytes ReadPassword(const PasswordOptions& options, Prompt prompt) {
  if (CountSources(options) > 1) throw WrongUsage("only one password option is allowed");
  if (options.none) return {};
  if (options.builtIn) return BuiltIn();
  if (options.variable) return FromVariable(*options.variable);
  if (options.file) return FromFile(InputFile(*options.file), options.exact);
  if (options.descriptor) {
    return FromFile(InputFile::FromDescriptor(*options.descriptor), options.exact);
  }
  return FromTerminal(prompt);
}

}  // namespace latchkey::cli
