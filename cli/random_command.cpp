// latchkey random and latchkey salt.
#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/hex_text.h"
#include "cli/json.h"
#include "cli/output_options.h"
#include "cli/platform/output_file.h"
#include "crypto/engine/provider_random.h"
#include "crypto/text_codec.h"
#include "diagnostics/thread_state.h"
#include "latchkey/cls_crypto_api.h"

namespace latchkey::cli {
namespace {

struct RandomOptions {
  std::uint64_t length = 0;
  bool hex = false;
  bool component = false;
  bool exact = false;
  OutputOptions output;
};

struct SaltOptions {
  std::int32_t length = 0;
  bool letters = false;
  OutputOptions output;
};

CommandError NoRandomData() {
  return CommandError(Failure{.text = "the provider gave no random data"});
}

// Throws the failure that an operation left in the error record. An empty result without a record
// means that the provider refused.
void RequireResult(const WipedBytes& result, std::int32_t length) {
  if (ErrorRecord().ErrorExists()) throw CommandError(RecordedFailure());
  if (result.empty() && length != 0) throw NoRandomData();
}

// Converts a text to code-page bytes, and wipes the text.
WipedBytes TakeBytes(Text text) {
  const WipeAtExit wipe(text);
  return EncodeText(text);
}

// Takes the data as a line (digits and letters) or as bytes: for a file, or for the JSON object
// that standard output gets instead.
class DataOutput {
 public:
  DataOutput(const OutputOptions& options, bool isLine, const Report& report)
      : isLine_(isLine), report_(report) {
    if (report.IsJson() && options.IsStandardOutput()) return;
    if (!isLine) RefuseTerminal(options);
    file_.emplace(options.file, options.force, Readers::Owner);
    result_["output"] = options.file;
  }

  void Write(const WipedBytes& data) {
    if (file_) return file_->Write(data);
    text_ += isLine_ ? std::string(data.begin(), data.end()) : LowerHexOf(data);
  }

  void Finish() {
    if (file_) {
      constexpr std::array<std::uint8_t, 1> kLineEnd{'\n'};
      if (isLine_) file_->Write(kLineEnd);
      file_->Commit();
    } else {
      result_[isLine_ ? "text" : "hex"] = text_;
    }
    report_.Result(result_);
  }

 private:
  bool isLine_;
  const Report& report_;
  std::optional<OutputFile> file_;
  std::string text_;
  Json result_;
};

void GiveComponentData(const RandomOptions& options, DataOutput& output) {
  if (options.length > std::numeric_limits<std::int32_t>::max()) {
    throw WrongUsage("--component takes at most 2147483647 bytes");
  }
  const auto length = static_cast<std::int32_t>(options.length);
  clsCryptoAPI api;
  const WipedBytes data = TakeBytes(api.CreateRandom(length, options.exact, options.hex, true));
  RequireResult(data, length);
  output.Write(data);
}

void GiveRandomBytes(const RandomOptions& options, DataOutput& output) {
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  ProviderRandom random;
  if (!random.IsOpen()) throw CommandError(FailureAt(check::kRandomProvider));
  WipedBytes piece;
  for (std::uint64_t left = options.length; left > 0; left -= piece.size()) {
    piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(left, kPiece)));
    if (!random.Fill(piece)) throw NoRandomData();
    output.Write(options.hex ? UpperHexOf(piece) : piece);
  }
}

ExitStatus RunRandom(const RandomOptions& options, const Report& report) {
  if (options.exact && !options.component) throw WrongUsage("--exact requires --component");
  DataOutput output(options.output, options.hex, report);
  (options.component ? GiveComponentData : GiveRandomBytes)(options, output);
  output.Finish();
  return ExitStatus::Done;
}

ExitStatus RunSalt(const SaltOptions& options, const Report& report) {
  DataOutput output(options.output, options.letters, report);
  clsCryptoAPI api;
  const WipedBytes data = TakeBytes(api.CreateSaltValue(options.length, options.letters));
  RequireResult(data, options.length);
  output.Write(data);
  output.Finish();
  return ExitStatus::Done;
}

void AddRandomCommand(CommandLine& commandLine) {
  const auto options = std::make_shared<RandomOptions>();
  CLI::App& command =
      commandLine.Add("random", "Write random bytes", "latchkey random 32 --hex",
                      [options](Report& report) { return RunRandom(*options, report); });
  // The parser reads a number that is negative or too large as the largest one.
  command.add_option("N", options->length, "Write this number of bytes")
      ->required()
      ->check(CLI::Range(std::uint64_t{0}, std::numeric_limits<std::uint64_t>::max() / 2)
                  .description(""))
      ->type_name("");
  command.add_flag("--hex", options->hex, "Write hexadecimal digits, two for each byte");
  command.add_flag("--component", options->component,
                   "Write what CreateRandom returns: the part of the seed text beyond N characters "
                   "follows the random bytes");
  command.add_flag("--exact", options->exact,
                   "With --component, cut the result to N characters (with --hex: N digits)");
  AddOutputOptions(command, options->output);
}

void AddSaltCommand(CommandLine& commandLine) {
  const auto options = std::make_shared<SaltOptions>();
  CLI::App& command = commandLine.Add(
      "salt", "Write a salt value, as CreateSaltValue makes it", "latchkey salt 20 --letters",
      [options](Report& report) { return RunSalt(*options, report); });
  command.add_option("N", options->length, "Make a salt of this number of characters")
      ->required()
      ->check(CLI::Range(0, std::numeric_limits<std::int32_t>::max()).description(""))
      ->type_name("");
  command.add_flag("--letters", options->letters, "Use only letters A to Z and a to z");
  AddOutputOptions(command, options->output);
}

}  // namespace

void AddRandomCommands(CommandLine& commandLine) {
  AddRandomCommand(commandLine);
  AddSaltCommand(commandLine);
}

}  // namespace latchkey::cli
