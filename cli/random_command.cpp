// latchkey random and latchkey salt.
#include <limits>
#include <memory>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/hex_text.h"
#include "cli/json.h"
#include "cli/platform/output_file.h"
#include "crypto/text_codec.h"
#include "diagnostics/thread_state.h"
#include "latchkey/cls_crypto_api.h"

namespace latchkey::cli {
namespace {

struct RandomOptions {
  std::int32_t length = 0;
  bool hex = false;
  bool exact = false;
};

struct SaltOptions {
  std::int32_t length = 0;
  bool letters = false;
};

// Throws the failure that an operation left in the error record. An empty result without a record
// means that the provider refused.
void RequireResult(const WipedBytes& result, std::int32_t length) {
  if (ErrorRecord().ErrorExists()) throw CommandError(RecordedFailure());
  if (!result.empty() || length == 0) return;
  Failure failure;
  failure.text = "the provider gave no random data";
  throw CommandError(failure);
}

// Writes raw bytes unchanged, and digits and letters as a line.
void Write(WipedBytes data, bool isLine) {
  if (isLine) data.push_back('\n');
  OutputFile output("-", false, Readers::Default);
  output.Write(data);
  output.Commit();
}

// Converts a text to code-page bytes, and wipes the text.
WipedBytes TakeBytes(Text text) {
  const WipeAtExit wipe(text);
  return EncodeText(text);
}

ExitStatus Give(const WipedBytes& data, bool isLine, const Report& report) {
  if (report.IsJson()) {
    report.Result(isLine ? Json{{"text", std::string(data.begin(), data.end())}}
                         : Json{{"hex", LowerHexOf(data)}});
  } else {
    Write(data, isLine);
  }
  return ExitStatus::Done;
}

ExitStatus RunRandom(const RandomOptions& options, const Report& report) {
  clsCryptoAPI api;
  const WipedBytes data =
      TakeBytes(api.CreateRandom(options.length, options.exact, options.hex, true));
  RequireResult(data, options.length);
  return Give(data, options.hex, report);
}

ExitStatus RunSalt(const SaltOptions& options, const Report& report) {
  clsCryptoAPI api;
  const WipedBytes data = TakeBytes(api.CreateSaltValue(options.length, options.letters));
  RequireResult(data, options.length);
  return Give(data, options.letters, report);
}

void AddLength(CLI::App& command, std::int32_t& length, const char* description) {
  command.add_option("N", length, description)
      ->required()
      ->check(CLI::Range(0, std::numeric_limits<std::int32_t>::max()).description(""))
      ->type_name("");
}

}  // namespace

void AddRandomCommands(CommandLine& commandLine) {
  const auto random = std::make_shared<RandomOptions>();
  CLI::App& randomCommand =
      commandLine.Add("random", "Write random bytes, as CreateRandom makes them",
                      "latchkey random 32 --hex --exact",
                      [random](Report& report) { return RunRandom(*random, report); });
  AddLength(randomCommand, random->length, "Request this number of bytes");
  randomCommand.add_flag("--hex", random->hex, "Write hexadecimal digits");
  randomCommand.add_flag("--exact", random->exact,
                         "Cut the result to N characters (with --hex: N digits); without it, the "
                         "part of the seed text beyond that length follows the random bytes");

  const auto salt = std::make_shared<SaltOptions>();
  CLI::App& saltCommand = commandLine.Add(
      "salt", "Write a salt value, as CreateSaltValue makes it", "latchkey salt 20 --letters",
      [salt](Report& report) { return RunSalt(*salt, report); });
  AddLength(saltCommand, salt->length, "Make a salt of this number of characters");
  saltCommand.add_flag("--letters", salt->letters, "Use only letters A to Z and a to z");
}

}  // namespace latchkey::cli
