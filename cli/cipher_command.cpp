// latchkey encrypt and latchkey decrypt.
#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "cli/cipher_stream.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/key_options.h"
#include "cli/many_file_options.h"
#include "cli/many_files.h"
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
  const char* participle;
  const char* description;
  const char* example;
  CipherDirection direction;
  Readers readers;
  Prompt prompt;
};

constexpr CipherCommand kEncrypt{
    "encrypt",
    "encrypted",
    "Encrypt exact bytes under a password",
    "latchkey encrypt --hash sha1 --cipher 3des --password-file secret.txt -o report.lk report.pdf",
    CipherDirection::Encrypt,
    Readers::Default,
    Prompt::Twice};

constexpr CipherCommand kDecrypt{
    "decrypt",
    "decrypted",
    "Decrypt exact bytes under a password",
    "latchkey decrypt --hash sha1 --cipher 3des --password-file secret.txt -o report.pdf report.lk",
    CipherDirection::Decrypt,
    Readers::Owner,
    Prompt::Once};

struct Options {
  KeyOptions key;
  PasswordOptions password;
  OutputOptions output;
  ManyFileOptions many;
  std::string input = "-";
};

// Raises CommandError about `file` if a check failed.
void Require(const CheckSite* failed, const std::string& file) {
  if (failed != nullptr) throw CommandError(FailureAt(*failed, file));
}

// The sessions of the key for input of that size, for at most that number of threads.
CipherWork PrepareWork(const CipherCommand& command, const DerivedKey& key, const InputFile& input,
                       std::size_t threads = SIZE_MAX) {
  const bool inOrder =
      command.direction == CipherDirection::Encrypt || !key.Settings().HasBlockCipher();
  const std::size_t workers = std::min(CipherWorkers(input.Size(), inOrder), threads);
  CipherWork work{command.direction, {}, workers, input.Name()};
  for (std::size_t i = 0; i < (inOrder ? 1 : work.workers); ++i) {
    work.keys.push_back(key.NewSession());
    if (!work.keys.back().HasKey()) Require(&SitesOf(command.direction).key, input.Name());
  }
  return work;
}

ByteCounts Transform(CipherWork& work, InputFile& input, OutputFile& output,
                     const std::function<void(std::size_t)>& advance) {
  if (work.workers > 1) input.AllowStop();
  return RunCipher(work, {[&](std::span<std::uint8_t> bytes) { return input.Read(bytes); },
                          [&] { input.StopReading(); },
                          [&](std::span<const std::uint8_t> result, std::size_t consumed) {
                            output.Write(result);
                            advance(consumed);
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
    counts = Transform(work, input, output, [&](std::size_t bytes) { progress.Advance(bytes); });
  }
  input.Close();
  output.Commit();
  report.Result(Result(options, settings, counts));
  return ExitStatus::Done;
}

ExitStatus RunForManyFiles(const CipherCommand& command, const Options& options, Report& report) {
  if (options.many.list) RequireOwnSource(options.password, *options.many.list);
  const KeySettings settings = SettingsOf(options.key);
  const FilePlan plan(options.many, command.direction);
  DerivedKey key;
  Require(key.Open(settings, SitesOf(command.direction)), {});
  Require(key.Derive(ReadPassword(options.password, command.prompt)), {});
  const auto stream = [&](InputFile& input, OutputFile& output, std::size_t threads,
                          const std::function<void(std::size_t)>& advance) {
    CipherWork work = PrepareWork(command, key, input, threads);
    return Transform(work, input, output, advance);
  };
  FileResults results(report, plan);
  RunManyFiles(
      {options.many, key, command.direction, command.readers, options.output.force, stream}, plan,
      results);
  Json settingsOfKey = Json::object();
  AddSettings(settingsOfKey, settings);
  return results.Finish(command.participle, settingsOfKey);
}

ExitStatus RunChosenForm(const CipherCommand& command, Options& options, Report& report) {
  if (options.many.AreChosen(command.name, options.output.force)) {
    return RunForManyFiles(command, options, report);
  }
  if (!options.many.inputs.empty()) options.input = options.many.inputs.front();
  return RunCipherCommand(command, options, report);
}

void AddCommand(CommandLine& commandLine, const CipherCommand& cipherCommand) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      commandLine.Add(cipherCommand.name, cipherCommand.description, cipherCommand.example,
                      [options, &cipherCommand](Report& report) {
                        return RunChosenForm(cipherCommand, *options, report);
                      });
  AddKeyOptions(command, options->key, Required::Yes);
  AddOutputOptions(command, options->output);
  AddPasswordOptions(command, options->password);
  AddManyFileOptions(command, options->many);
}

}  // namespace

void AddCipherCommands(CommandLine& commandLine) {
  AddCommand(commandLine, kEncrypt);
  AddCommand(commandLine, kDecrypt);
}

}  // namespace latchkey::cli
