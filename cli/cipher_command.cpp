// latchkey encrypt and latchkey decrypt.
#include <memory>
#include <optional>
#include <utility>

#include "cli/cipher_stream.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/key_options.h"
#include "cli/output_options.h"
#include "cli/password_options.h"
#include "cli/platform/input_file.h"
#include "cli/platform/output_file.h"
#include "cli/progress.h"

namespace latchkey::cli {
namespace {

// The differences between the two commands.
struct CipherCommand {
  const char* name;
  const char* description;
  const char* example;
  CipherDirection direction;
  Readers readers;
  Prompt prompt;
};

constexpr CipherCommand kEncrypt{
    "encrypt",
    "Encrypt exact bytes under a password",
    "latchkey encrypt --hash sha1 --cipher 3des --password-file secret.txt -o report.lk report.pdf",
    CipherDirection::Encrypt,
    Readers::Default,
    Prompt::Twice};

constexpr CipherCommand kDecrypt{
    "decrypt",
    "Decrypt exact bytes under a password",
    "latchkey decrypt --hash sha1 --cipher 3des --password-file secret.txt -o report.pdf report.lk",
    CipherDirection::Decrypt,
    Readers::Owner,
    Prompt::Once};

struct Options {
  KeyOptions key;
  PasswordOptions password;
  OutputOptions output;
  std::string input = "-";
};

// Raises CommandError about `file` if a check failed.
void Require(const CheckSite* failed, const std::string& file) {
  if (failed != nullptr) throw CommandError(FailureAt(*failed, file));
}

// Copies the key once for each worker, or once in all if pieces must be processed in order.
CipherWork PrepareWork(const CipherCommand& command, const DerivedKey& key,
                       const InputFile& input) {
  const bool inOrder =
      command.direction == CipherDirection::Encrypt || !key.Settings().HasBlockCipher();
  CipherWork work{command.direction, {}, CipherWorkers(input.Size(), inOrder), input.Name()};
  for (std::size_t i = 0; i < (inOrder ? 1 : work.workers); ++i) {
    work.keys.push_back(key.NewSession());
    if (!work.keys.back().HasKey()) Require(&SitesOf(command.direction).key, input.Name());
  }
  return work;
}

ByteCounts Transform(CipherWork& work, InputFile& input, OutputFile& output, Progress& progress) {
  if (work.workers > 1) input.AllowStop();
  return RunCipher(work, {[&](std::span<std::uint8_t> bytes) { return input.Read(bytes); },
                          [&] { input.StopReading(); },
                          [&](std::span<const std::uint8_t> result, std::size_t consumed) {
                            output.Write(result);
                            progress.Advance(consumed);
                          }});
}

Json Result(const Options& options, const KeySettings& settings, const ByteCounts& counts) {
  Json result{{"input", options.input}, {"output", options.output.file}};
  AddSettings(result, settings);
  result["bytes_in"] = counts.in;
  result["bytes_out"] = counts.out;
  return result;
}

ExitStatus RunCipherCommand(const CipherCommand& command, const Options& options, Report& report) {
  if (options.output.IsStandardOutput()) report.GiveOutputToData();
  RequireOwnSource(options.password, options.input);
  const KeySettings settings = SettingsOf(options.key);
  InputFile input(options.input);
  const CipherSites& sites = SitesOf(command.direction);
  DerivedKey key;
  Require(key.Open(settings, sites), input.Name());
  Require(key.Derive(ReadPassword(options.password, command.prompt)), input.Name());
  CipherWork work = PrepareWork(command, key, input);
  OutputFile output(options.output.file, options.output.force, command.readers);
  ByteCounts counts;
  {
    Progress progress(input.Size(), report.IsQuiet());
    counts = Transform(work, input, output, progress);
  }
  input.Close();
  output.Commit();
  report.Result(Result(options, settings, counts));
  return ExitStatus::Done;
}

void AddCommand(CommandLine& commandLine, const CipherCommand& cipherCommand) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      commandLine.Add(cipherCommand.name, cipherCommand.description, cipherCommand.example,
                      [options, &cipherCommand](Report& report) {
                        return RunCipherCommand(cipherCommand, *options, report);
                      });
  AddKeyOptions(command, options->key, Required::Yes);
  AddOutputOptions(command, options->output);
  AddPasswordOptions(command, options->password);
  command.add_option("IN", options->input, "Read this file (default: standard input)")
      ->type_name("");
}

}  // namespace

void AddCipherCommands(CommandLine& commandLine) {
  AddCommand(commandLine, kEncrypt);
  AddCommand(commandLine, kDecrypt);
}

}  // namespace latchkey::cli
