// latchkey encrypt and latchkey decrypt.
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <utility>

#include "cli/alternatives.h"
#include "cli/cipher_key.h"
#include "cli/cipher_stream.h"
#include "cli/ciphertext_input.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/data_form.h"
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
};

constexpr CipherCommand kEncrypt{
    "encrypt",
    "encrypted",
    "Encrypt exact bytes under a password",
    "latchkey encrypt --hash sha1 --cipher 3des --password-file secret.txt -o report.lk report.pdf",
    CipherDirection::Encrypt,
    Readers::Default};

constexpr CipherCommand kDecrypt{
    "decrypt",
    "decrypted",
    "Decrypt exact bytes under a password",
    "latchkey decrypt --hash sha1 --cipher 3des --password-file secret.txt -o report.pdf report.lk",
    CipherDirection::Decrypt,
    Readers::Owner};

struct Options {
  KeyOptions key;
  PasswordOptions password;
  OutputOptions output;
  ManyFileOptions many;
  std::string input = "-";
  std::string from;  // a name of TextFormNames; empty: bytes
  std::string to;
  bool restoreSpaces = false;
  bool automatic = false;
};

// Copies the key once for each worker, or once in all if pieces must be processed in order; for at
// most that number of threads.
CipherWork PrepareWork(const CipherCommand& command, const DerivedKey& key, const InputFile& input,
                       std::size_t threads = SIZE_MAX) {
  const bool inOrder =
      command.direction == CipherDirection::Encrypt || !key.Settings().HasBlockCipher();
  const std::size_t workers = std::min(CipherWorkers(input.Size(), inOrder), threads);
  CipherWork work{command.direction, {}, workers, input.Name()};
  for (std::size_t i = 0; i < (inOrder ? 1 : work.workers); ++i) {
    work.keys.push_back(key.NewSession());
    if (!work.keys.back().HasKey()) {
      throw CommandError(FailureAt(SitesOf(command.direction).key, input.Name()));
    }
  }
  return work;
}

ByteCounts Transform(CipherWork& work, InputFile& file, CiphertextInput& input,
                     DataWriter& output) {
  if (work.workers > 1) file.AllowStop();
  const ByteCounts counts =
      RunCipher(work, {[&](std::span<std::uint8_t> bytes) { return input.Read(bytes); },
                       [&] { file.StopReading(); },
                       [&](std::span<const std::uint8_t> result) { output.Write(result); }});
  output.Finish();
  return counts;
}

Json Result(const Options& options, const KeySettings& settings, const ByteCounts& counts) {
  Json result{{"input", options.input}, {"output", options.output.file}};
  AddSettings(result, settings);
  result["bytes_in"] = counts.in;
  result["bytes_out"] = counts.out;
  return result;
}

// Derives the key before the data is read.
void MakeKey(ReadyKey& ready, const CipherCommand& command, const Options& options,
             const std::string& file, bool quiet) {
  if (options.automatic) {
    return FindKeyOf(ready, options.key, options.password, options.input, DataFormOf(options.from),
                     quiet);
  }
  DeriveKey(ready, options.key, options.password, command.direction, file);
  if (options.restoreSpaces) ready.spaces = Spaces::Restore;
}

CommandError WithHint(const CommandError& error, const ReadyKey& ready,
                      const CiphertextInput& input) {
  const std::string length = input.LengthHint();
  return CommandError(WithDecryptionHint(error.Get(), length.empty() ? ready.hint : length));
}

struct Outcome {
  ByteCounts counts;
  std::size_t restored = 0;  // spaces
};

Outcome TransformFile(const CipherCommand& command, const Options& options, const ReadyKey& ready,
                      InputFile& file, OutputFile& output, bool quiet) {
  CipherWork work = PrepareWork(command, ready.key, file);
  Progress progress(file.Size(), quiet);
  DataReader data(file, DataFormOf(options.from),
                  [&](std::size_t bytes) { progress.Advance(bytes); });
  CiphertextInput input([&](std::span<std::uint8_t> bytes) { return data.Read(bytes); },
                        ready.key.Settings(), ready.spaces);
  DataWriter writer(DataFormOf(options.to), [&](std::span<const std::uint8_t> bytes) {
    RefuseTerminal(options.output, bytes);
    output.Write(bytes);
  });
  try {
    const ByteCounts counts = Transform(work, file, input, writer);
    return {counts, input.Restored()};
  } catch (const CommandError& error) {
    throw WithHint(error, ready, input);
  }
}

ExitStatus RunCipherCommand(const CipherCommand& command, const Options& options, Report& report) {
  if (options.output.IsStandardOutput()) report.GiveOutputToData();
  if (command.direction == CipherDirection::Encrypt && options.to.empty()) {
    RefuseTerminal(options.output);
  }
  RequireOwnSource(options.password, options.input);
  InputFile file(options.input);
  ReadyKey ready;
  MakeKey(ready, command, options, file.Name(), report.IsQuiet());
  OutputFile output(options.output.file, options.output.force, command.readers);
  const Outcome outcome = TransformFile(command, options, ready, file, output, report.IsQuiet());
  file.Close();
  output.Commit();
  Json result = Result(options, ready.key.Settings(), outcome.counts);
  if (outcome.restored > 0) result["restored_spaces"] = outcome.restored;
  report.Result(result);
  return ExitStatus::Done;
}

ExitStatus RunForManyFiles(const CipherCommand& command, const Options& options, Report& report) {
  if (options.automatic) throw WrongUsage("--auto accepts only one input");
  if (options.many.list) RequireOwnSource(options.password, *options.many.list);
  const FilePlan plan(options.many, command.direction);
  ReadyKey ready;
  MakeKey(ready, command, options, {}, report.IsQuiet());
  const auto stream = [&](InputFile& file, CiphertextInput& input, DataWriter& output,
                          std::size_t threads) {
    CipherWork work = PrepareWork(command, ready.key, file, threads);
    return Transform(work, file, input, output);
  };
  FileResults results(report, plan);
  RunManyFiles(
      {options.many, ready.key, command.direction, ready.spaces, ready.hint, command.readers,
       options.output.force, DataFormOf(options.from), DataFormOf(options.to), stream},
      plan, results);
  Json settings = Json::object();
  AddSettings(settings, ready.key.Settings());
  return results.Finish(command.participle, settings);
}

ExitStatus RunChosenForm(const CipherCommand& command, Options& options, Report& report) {
  if (options.many.AreChosen(command.name, options.output.force)) {
    return RunForManyFiles(command, options, report);
  }
  if (!options.many.inputs.empty()) options.input = options.many.inputs.front();
  return RunCipherCommand(command, options, report);
}

void AddFormOptions(CLI::App& command, Options& options) {
  AddChoice(command, "--from", options.from,
            "Read the data as hexadecimal digits or Base64 (default: bytes)", TextFormNames());
  AddChoice(command, "--to", options.to,
            "Write the result as hexadecimal digits or Base64 (default: bytes)", TextFormNames());
}

// The parser requires --hash and --cipher unless they are to be found.
void AddDecryptionOptions(CLI::App& command, Options& options) {
  command.add_flag("--restore-spaces", options.restoreSpaces,
                   "Put back bytes of value 20 (hexadecimal) that a client cut from the end");
  CLI::Option* const automatic = command.add_flag("--auto", options.automatic,
                                                  "Find the settings and the password's encoding "
                                                  "as identify does; fail if they are not certain");
  automatic->each([&command](const std::string& /*value*/) {
    for (const char* const name : {"--hash", "--cipher"}) {
      command.get_option(name)->required(false);
    }
  });
}

void AddCommand(CommandLine& commandLine, const CipherCommand& cipherCommand) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      commandLine.Add(cipherCommand.name, cipherCommand.description, cipherCommand.example,
                      [options, &cipherCommand](Report& report) {
                        return RunChosenForm(cipherCommand, *options, report);
                      });
  AddKeyOptions(command, options->key);
  if (cipherCommand.direction == CipherDirection::Decrypt) AddDecryptionOptions(command, *options);
  AddFormOptions(command, *options);
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
