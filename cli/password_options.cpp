#include "cli/password_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <utility>

#include "cli/failure.h"
#include "cli/platform/environment.h"
#include "cli/platform/input_file.h"
#include "cli/platform/stream_name.h"
#include "cli/platform/terminal.h"
#include "cli/report.h"
#include "crypto/default_password.h"

namespace latchkey::cli {
namespace {

CommandError Failed(std::string text, std::string hint = {}) {
  return CommandError(Failure{.text = std::move(text), .hint = std::move(hint)});
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

CommandError SeveralLines() {
  return Failed("the password has several lines",
                "keep only the password in the file, or use --password-exact for all of it");
}

CommandError NotText(const PasswordOptions& options) {
  return Failed("the password is not UTF-8, or UTF-16 with a BOM, so it cannot be converted",
                "save the file as UTF-8; if its bytes are in " + options.encoding +
                    " already, use --password-encoding bytes");
}

// Of a file or descriptor: text or bytes.
template <class Lines>
Lines WithoutEnd(Lines lines, const PasswordOptions& options) {
  if (options.exact) return lines;
  DropLineEnd(lines);
  if (HasLineEnd(lines)) throw SeveralLines();
  return lines;
}

WipedBytes FromVariable(const std::string& name, TextForm form) {
  std::optional<WipedBytes> value = TakeVariable(name, form);
  if (!value) throw Failed("environment variable " + name + " is not set");
  return std::move(*value);
}

WipedBytes Ask(const char* prompt, TextForm form) {
  std::optional<WipedBytes> line = ReadHiddenLine(prompt, form);
  if (line) return std::move(*line);
  throw WrongUsage("no password given, and no terminal to ask for one",
                   "use --password-file, --password-env or --password-fd");
}

WipedBytes FromTerminal(Prompt prompt, TextForm form) {
  WipedBytes password = Ask("Password: ", form);
  if (prompt == Prompt::Twice && Ask("Password again: ", form) != password) {
    throw Failed("the two passwords differ");
  }
  return password;
}

// What the source contains. `form` is that of a variable or a typed line.
WipedBytes ReadSource(const PasswordOptions& options, Prompt prompt, TextForm form) {
  if (options.variable) return FromVariable(*options.variable, form);
  if (options.file) return ReadAll(InputFile(*options.file));
  if (options.descriptor) return ReadAll(InputFile::FromDescriptor(*options.descriptor));
  return FromTerminal(prompt, form);
}

bool IsFile(const PasswordOptions& options) { return options.file || options.descriptor; }

// The text that the source contains; nothing for other bytes.
std::optional<WipedText> TextIn(const WipedBytes& source, const PasswordOptions& options) {
  if (!IsFile(options)) return TextEncoding("utf-8").Decode(source);
  std::optional<WipedText> text = TextOfFile(source);
  return text ? WithoutEnd(std::move(*text), options) : text;
}

WipedBytes ReadConverted(const PasswordOptions& options, Prompt prompt) {
  const TextEncoding encoding(options.encoding);
  const auto text = TextIn(ReadSource(options, prompt, TextForm::Utf8), options);
  if (!text) throw NotText(options);
  std::optional<WipedBytes> bytes = encoding.Encode(*text);
  if (bytes) return std::move(*bytes);
  throw Failed("the password has a character that " + options.encoding + " lacks",
               "name the encoding of the program that encrypted the data");
}

std::string NamingHint(std::span<const std::uint8_t> password) {
  const std::optional<std::string> likely = LikelyPage(password);
  if (!likely) {
    return "the password is neither ASCII nor UTF-8: save it as UTF-8, and use "
           "--password-encoding with the encoding it had in the program that encrypted the data";
  }
  return "the password is not ASCII: name the encoding it had in the program that encrypted the "
         "data, most likely --password-encoding " +
         *likely;
}

WipedBytes ReadBytes(const PasswordOptions& options, Prompt prompt) {
  const bool isTyped = !IsFile(options) && !options.variable;
  const bool mustBeAscii = isTyped && options.encoding.empty();
  WipedBytes password = ReadSource(options, prompt, mustBeAscii ? TextForm::Utf8 : TextForm::Bytes);
  if (mustBeAscii && !IsAscii(password)) {
    throw Failed("a typed password with non-ASCII characters requires --password-encoding",
                 NamingHint(password));
  }
  return IsFile(options) ? WithoutEnd(std::move(password), options) : password;
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

void CheckOptions(const PasswordOptions& options) {
  if (CountSources(options) > 1) throw WrongUsage("only one password option is allowed");
  if ((options.none || options.builtIn) && !options.encoding.empty()) {
    throw WrongUsage("--password-encoding requires a password that is given as text");
  }
}

void RequireNotEmpty(const WipedBytes& password) {
  if (!password.empty()) return;
  throw Failed("the password is empty", "use --no-password for an empty password");
}

EncodedPassword ReadForm(const PasswordOptions& options, Prompt prompt) {
  EncodedPassword form;
  form.encoding = options.encoding.empty() ? kBytesEncoding : options.encoding;
  if (options.none) return form;
  form.bytes = options.builtIn           ? BuiltIn()
               : options.NamesEncoding() ? ReadConverted(options, prompt)
                                         : ReadBytes(options, prompt);
  RequireNotEmpty(form.bytes);
  return form;
}

// The forms of a password whose encoding is not named.
std::vector<EncodedPassword> ReadAllForms(const PasswordOptions& options) {
  WipedBytes source = ReadSource(options, Prompt::Once, TextForm::Utf8);
  const std::optional<WipedText> text = TextIn(source, options);
  if (IsFile(options) && !text) source = WithoutEnd(std::move(source), options);
  if (IsFile(options) && text && !options.exact) DropLineEnd(source);
  RequireNotEmpty(source);
  return AllForms(source, text);
}

void PrintForm(const EncodedPassword& form) {
  Report::Note("latchkey: password of " + std::to_string(form.bytes.size()) + " bytes, encoding " +
               form.encoding + (form.hasNul ? ", with a zero character at the end" : ""));
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
                       "Use all lines of the file, with their ends"),
      command
          .add_option("--password-encoding", options.encoding,
                      "Convert the password from text to this encoding: windows-1250 to 1258, 874, "
                      "932, 936, 949 or 950, utf-8 or utf-16le (default: bytes, as it is)")
          ->transform(EncodingName())
          ->type_name("NAME"),
      command.add_flag("--password-nul", options.appendNul,
                       "Append a zero character to the password, as some programs do"),
      command.add_flag("--default-password", options.builtIn,
                       "Use the component's built-in password"),
      command.add_flag("--no-password", options.none, "Use an empty password")};
  for (CLI::Option* const option : added) option->group("Password");
  command.add_flag("-v,--verbose", options.verbose,
                   "Print the encoding and length of the password on standard error");
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
  CheckOptions(options);
  EncodedPassword form = ReadForm(options, prompt);
  if (options.appendNul) AppendNul(form);
  if (options.verbose) PrintForm(form);
  return std::move(form.bytes);
}

std::vector<EncodedPassword> ReadPasswordForms(const PasswordOptions& options) {
  CheckOptions(options);
  const bool isKnown = options.none || options.builtIn || !options.encoding.empty();
  std::vector<EncodedPassword> forms =
      isKnown ? std::vector{ReadForm(options, Prompt::Once)} : ReadAllForms(options);
  AddFormsWithNul(forms);
  if (options.appendNul) std::erase_if(forms, [](const auto& form) { return !form.hasNul; });
  if (options.verbose) std::ranges::for_each(forms, PrintForm);
  return forms;
}

std::string EncodingHint(const PasswordOptions& options, std::span<const std::uint8_t> password) {
  const bool isText = !options.none && !options.builtIn && options.encoding.empty();
  return isText && !IsAscii(password) ? NamingHint(password) : std::string();
}

}  // namespace latchkey::cli
