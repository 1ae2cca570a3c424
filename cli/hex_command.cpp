// latchkey hex.
#include <memory>
#include <nlohmann/json.hpp>
#include <span>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/data_form.h"
#include "cli/json.h"
#include "cli/output_options.h"
#include "cli/platform/input_file.h"
#include "cli/platform/output_file.h"
#include "cli/progress.h"

namespace latchkey::cli {
namespace {

struct Options {
  bool decode = false;
  OutputOptions output;
  std::string input = "-";
};

void Convert(const Options& options, DataReader& input, OutputFile& output) {
  DataWriter writer(options.decode ? DataForm::Bytes : DataForm::Hex,
                    [&](std::span<const std::uint8_t> bytes) {
                      RefuseTerminal(options.output, bytes);
                      output.Write(bytes);
                    });
  WipedBytes piece(std::size_t{1} << 16);
  for (std::size_t count = piece.size(); count == piece.size();) {
    count = input.Read(piece);
    writer.Write(std::span(piece).first(count));
  }
  writer.Finish();
}

ExitStatus RunHex(const Options& options, Report& report) {
  if (options.output.IsStandardOutput()) report.GiveOutputToData();
  InputFile input(options.input);
  OutputFile output(options.output.file, options.output.force, Readers::Default);
  {
    Progress progress(input.Size(), report.IsQuiet());
    DataReader reader(input, options.decode ? DataForm::Hex : DataForm::Bytes,
                      [&](std::size_t bytes) { progress.Advance(bytes); });
    Convert(options, reader, output);
  }
  input.Close();
  output.Commit();
  report.Result(Json{{"input", options.input}, {"output", options.output.file}});
  return ExitStatus::Done;
}

}  // namespace

void AddHexCommand(CommandLine& commandLine) {
  const auto options = std::make_shared<Options>();
  CLI::App& command =
      commandLine.Add("hex", "Convert bytes to hexadecimal digits, or digits to bytes",
                      "latchkey hex -d <ciphertext.hex >ciphertext",
                      [options](Report& report) { return RunHex(*options, report); });
  command.add_flag("-d,--decode", options->decode, "Convert digits to bytes");
  AddOutputOptions(command, options->output);
  command.add_option("IN", options->input, "Read this file (default: standard input)")
      ->type_name("");
}

}  // namespace latchkey::cli
