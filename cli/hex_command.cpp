// latchkey hex.
#include <array>
#include <memory>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/hex_text.h"
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

// Passes the input to `take`, piece by piece.
template <class Take>
void ForEachPiece(InputFile& input, Progress& progress, Take take) {
  WipedBytes piece(std::size_t{1} << 16);
  for (std::size_t count = piece.size(); count == piece.size();) {
    count = input.Read(piece);
    take(std::span<const std::uint8_t>(piece).first(count));
    progress.Advance(count);
  }
}

void Encode(const Options&, InputFile& input, OutputFile& output, Progress& progress) {
  bool isEmpty = true;
  ForEachPiece(input, progress, [&](std::span<const std::uint8_t> piece) {
    isEmpty = isEmpty && piece.empty();
    output.Write(UpperHexOf(piece));
  });
  constexpr std::array<std::uint8_t, 1> kLineEnd{'\n'};
  if (!isEmpty) output.Write(kLineEnd);
}

void Decode(const Options& options, InputFile& input, OutputFile& output, Progress& progress) {
  HexReader reader;
  ForEachPiece(input, progress, [&](std::span<const std::uint8_t> piece) {
    const WipedBytes bytes = reader.Read(piece, input.Name());
    RefuseTerminal(options.output, bytes);
    output.Write(bytes);
  });
  reader.Finish(input.Name());
}

ExitStatus RunHex(const Options& options, Report& report) {
  if (options.output.IsStandardOutput()) report.GiveOutputToData();
  InputFile input(options.input);
  OutputFile output(options.output.file, options.output.force, Readers::Default);
  {
    Progress progress(input.Size(), report.IsQuiet());
    (options.decode ? Decode : Encode)(options, input, output, progress);
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
