// latchkey records encrypt, decrypt and hash.
#include <algorithm>
#include <charconv>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "cli/algorithm_names.h"
#include "cli/alternatives.h"
#include "cli/cipher_key.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/key_options.h"
#include "cli/output_options.h"
#include "cli/password_options.h"
#include "cli/platform/input_file.h"
#include "cli/platform/output_file.h"
#include "cli/progress.h"
#include "cli/records/csv_format.h"
#include "cli/records/json_format.h"
#include "cli/records/lines_format.h"
#include "cli/records/record_report.h"
#include "cli/records/records_pipeline.h"
#include "cli/text_encoding.h"

namespace latchkey::cli {
namespace {

enum class Operation { Encrypt, Decrypt, Hash };

// The differences between the commands.
struct RecordsCommand {
  const char* name;
  const char* description;
  const char* example;
  Operation operation;
  const char* from;
  const char* to;
  Readers readers;
};

constexpr RecordsCommand kEncrypt{
    "encrypt",
    "Encrypt a field of each record",
    "latchkey records encrypt --format csv --column card --hash sha1 --cipher 3des "
    "--password-file secret.txt -o new.csv old.csv",
    Operation::Encrypt,
    "text",
    "hex",
    Readers::Default};

constexpr RecordsCommand kDecrypt{
    "decrypt",
    "Decrypt a field of each record",
    "latchkey records decrypt --format csv --column card --hash sha1 --cipher 3des "
    "--password-file secret.txt --text-encoding windows-1252 -o new.csv old.csv",
    Operation::Decrypt,
    "hex",
    "text",
    Readers::Owner};

constexpr RecordsCommand kHash{
    "hash",
    "Hash a field of each record",
    "latchkey records hash --format jsonl --field email --as digest -a sha1 <old.jsonl >new.jsonl",
    Operation::Hash,
    "text",
    "hex",
    Readers::Default};

const std::vector<std::string>& FormatNames() {
  static const std::vector<std::string> names{"lines", "csv", "jsonl"};
  return names;
}

const std::vector<std::string>& OnErrorNames() {
  static const std::vector<std::string> names{"stop", "skip", "keep", "null"};
  return names;
}

struct Options {
  std::string format;
  std::optional<std::string> column;
  std::optional<std::string> field;
  std::optional<std::string> addedName;
  bool hasNoHeader = false;
  std::string delimiter = ",";
  std::string from;
  std::string to;
  std::string encoding = "utf-8";
  std::string onError = "stop";
  std::string algorithm = "md5";
  std::optional<std::string> report;
  KeyOptions key;
  PasswordOptions password;
  OutputOptions output;
  std::string input = "-";
};

std::uint8_t DelimiterOf(const std::string& text) {
  if (text == "tab" || text == "\\t") return '\t';
  const bool isGood = text.size() == 1 && text != "\"" && text != "\n" && text != "\r";
  if (!isGood) throw WrongUsage("--delimiter requires one byte, or tab");
  return static_cast<std::uint8_t>(text.front());
}

std::unique_ptr<RecordFormat> CsvOf(const Options& options) {
  if (!options.column || options.column->empty()) throw WrongUsage("csv requires --column");
  CsvOptions csv;
  csv.columnName = *options.column;
  csv.hasHeader = !options.hasNoHeader;
  csv.delimiter = DelimiterOf(options.delimiter);
  csv.addedName = options.addedName;
  const char* const end = csv.columnName.data() + csv.columnName.size();
  const auto [rest, error] = std::from_chars(csv.columnName.data(), end, csv.columnNumber);
  const bool isNumber = error == std::errc() && rest == end;
  if (!isNumber) csv.columnNumber = 0;
  if (isNumber && csv.columnNumber == 0) throw WrongUsage("columns are counted from 1");
  if (!isNumber && options.hasNoHeader) throw WrongUsage("--no-header requires a column's number");
  return std::make_unique<CsvFormat>(std::move(csv));
}

std::unique_ptr<RecordFormat> JsonOf(const Options& options) {
  if (!options.field) throw WrongUsage("jsonl requires --field");
  if (options.to == "text" && options.encoding == kBytesEncoding) {
    throw WrongUsage("JSON cannot hold any bytes: use --to hex or base64, or name the encoding");
  }
  return std::make_unique<JsonFormat>(*options.field, options.addedName);
}

std::unique_ptr<RecordFormat> LinesOf(const Options& options) {
  if (options.addedName) throw WrongUsage("lines have one field: --as requires csv or jsonl");
  return std::make_unique<LinesFormat>();
}

std::unique_ptr<RecordFormat> FormatOf(const Options& options) {
  if (options.format != "csv" && (options.column || options.hasNoHeader)) {
    throw WrongUsage("--column and --no-header require csv");
  }
  if (options.format != "jsonl" && options.field) throw WrongUsage("--field requires jsonl");
  if (options.format == "csv") return CsvOf(options);
  return options.format == "jsonl" ? JsonOf(options) : LinesOf(options);
}

FieldForm FormOf(const std::string& name) {
  return static_cast<FieldForm>(NumberOf(name, FieldFormNames()) - 1);
}

// Makes the transforms, after the password was read.
class Transforms {
 public:
  Transforms(Operation operation, const Options& options, const std::string& input)
      : operation_(operation), hash_(NumberOf(options.algorithm, HashNames())) {
    if (operation == Operation::Hash) return;
    DeriveKey(ready_, options.key, options.password, Direction(), input);
  }

  [[nodiscard]] std::unique_ptr<ColumnTransform> Make() const {
    return operation_ == Operation::Hash ? MakeDigestTransform(hash_)
                                         : MakeCipherTransform(ready_, Direction());
  }

 private:
  [[nodiscard]] CipherDirection Direction() const noexcept {
    return operation_ == Operation::Encrypt ? CipherDirection::Encrypt : CipherDirection::Decrypt;
  }

  Operation operation_;
  std::int16_t hash_;
  ReadyKey ready_;
};

std::vector<RecordTools> ToolsOf(const Options& options, const RecordFormat& format,
                                 const Transforms& transforms, std::size_t workers) {
  const FieldCodecs codecs(options.encoding);
  std::vector<RecordTools> tools(workers);
  for (RecordTools& each : tools) {
    each.format = &format;
    each.from = codecs.Make(FormOf(options.from));
    each.to = codecs.Make(FormOf(options.to));
    each.transform = transforms.Make();
    each.onError = static_cast<OnError>(NumberOf(options.onError, OnErrorNames()) - 1);
  }
  return tools;
}

Json Result(Operation operation, const Options& options, const RecordCounts& counts) {
  Json result{{"input", options.input}, {"output", options.output.file}};
  if (operation == Operation::Hash) {
    result["algorithm"] = options.algorithm;
  } else {
    AddSettings(result, SettingsOf(options.key));
  }
  result["records"] = counts.records;
  result["changed"] = counts.changed;
  result["failed"] = counts.failed;
  result["completed"] = counts.completed;
  return result;
}

RecordCounts Run(RecordFormat& format, std::vector<RecordTools> tools, InputFile& input,
                 OutputFile& output, RecordReport& records, bool isQuiet) {
  Progress progress(input.Size(), isQuiet);
  if (tools.size() > 1) input.AllowStop();
  const RecordStreams streams{[&](std::span<std::uint8_t> bytes) { return input.Read(bytes); },
                              [&] { input.StopReading(); },
                              [&](ByteSpan text, std::size_t consumed) {
                                output.Write(text);
                                progress.Advance(consumed);
                              },
                              [&](const BlockResult& result) {
                                progress.Hide();
                                records.Add(result);
                              }};
  return RunRecords(format, std::move(tools), streams, input.Name());
}

ExitStatus RunRecordsCommand(const RecordsCommand& command, const Options& options,
                             Report& report) {
  if (options.output.IsStandardOutput()) report.GiveOutputToData();
  const std::unique_ptr<RecordFormat> format = FormatOf(options);
  RequireOwnSource(options.password, options.input);
  InputFile input(options.input);
  const Transforms transforms(command.operation, options, input.Name());
  OutputFile output(options.output.file, options.output.force, command.readers);
  RecordReport records(report, input.Name(), options.report, options.output.force);
  const RecordCounts counts =
      Run(*format, ToolsOf(options, *format, transforms, RecordWorkers(input.Size())), input,
          output, records, report.IsQuiet());
  input.Close();
  output.Commit();
  records.Finish(counts);
  report.Result(Result(command.operation, options, counts));
  return counts.failed == 0 ? ExitStatus::Done : ExitStatus::Failed;
}

void AddFormatOptions(CLI::App& command, Options& options) {
  AddChoice(command, "--format", options.format, "The records are in this format", FormatNames())
      ->required();
  command.add_option("--column", options.column, "csv: the name or number of the column")
      ->type_name("NAME|N");
  command.add_flag("--no-header", options.hasNoHeader, "csv: the first line is a record");
  command
      .add_option("--delimiter", options.delimiter,
                  "csv: the delimiter; tab means a tab character (default: ,)")
      ->type_name("BYTE");
  command.add_option("--field", options.field, "jsonl: the member of each object")
      ->type_name("NAME");
  command
      .add_option("--as", options.addedName,
                  "Add the result under this name and keep the field (csv and jsonl)")
      ->type_name("NAME");
}

void AddFieldOptions(CLI::App& command, Options& options) {
  AddChoice(command, "--from", options.from, "Read the field in this form", FieldFormNames());
  AddChoice(command, "--to", options.to, "Write the result in this form", FieldFormNames());
  command
      .add_option("--text-encoding", options.encoding,
                  "The encoding of the encrypted or hashed text, such as windows-1252; the field "
                  "itself is UTF-8; bytes: use it unchanged (default: utf-8)")
      ->transform(EncodingName())
      ->type_name("NAME");
}

void AddErrorOptions(CLI::App& command, Options& options) {
  AddChoice(
      command, "--on-error", options.onError,
      "Stop at a record that fails, leave it out, keep it as it is, or empty its field (stop)",
      OnErrorNames());
  command
      .add_option("--report", options.report,
                  "Write a line of JSON for each failed record to this file (default: lines on "
                  "standard error)")
      ->type_name("FILE");
}

void AddCommand(CommandLine& commandLine, CLI::App& group, const RecordsCommand& records) {
  const auto options = std::make_shared<Options>();
  options->from = records.from;
  options->to = records.to;
  CLI::App& command = commandLine.AddTo(
      group, records.name, records.description, records.example,
      [options, &records](Report& report) { return RunRecordsCommand(records, *options, report); });
  AddFormatOptions(command, *options);
  AddFieldOptions(command, *options);
  AddErrorOptions(command, *options);
  if (records.operation == Operation::Hash) {
    AddChoice(command, "-a,--algorithm", options->algorithm, "The hash (md5)", HashNames(),
              Numbers::Taken);
  } else {
    AddKeyOptions(command, options->key);
  }
  AddOutputOptions(command, options->output);
  if (records.operation != Operation::Hash) AddPasswordOptions(command, options->password);
  command.add_option("IN", options->input, "Read this file (default: standard input)")
      ->type_name("");
}

}  // namespace

void AddRecordsCommands(CommandLine& commandLine) {
  CLI::App& group = commandLine.AddGroup(
      "records", "Encrypt, decrypt or hash a field of each record: lines, CSV, JSON Lines");
  for (const RecordsCommand* const each : {&kEncrypt, &kDecrypt, &kHash}) {
    AddCommand(commandLine, group, *each);
  }
}

}  // namespace latchkey::cli
