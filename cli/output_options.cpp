#include "cli/output_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/platform/terminal.h"

namespace latchkey::cli {
namespace {

// Other than tabs, line ends and form feeds.
bool IsControl(std::uint8_t byte) {
  const bool isInText = byte == '\t' || byte == '\n' || byte == '\r' || byte == '\f';
  return (byte < ' ' && !isInText) || byte == 0x7F;
}

}  // namespace

void AddOutputOptions(CLI::App& command, OutputOptions& options) {
  command.add_option("-o,--output", options.file, "Write to this file (default: standard output)")
      ->each([&options](const std::string&) { options.isNamed = true; })
      ->type_name("OUT");
  command.add_flag("-f,--force", options.force,
                   "Replace an existing OUT, or write to a device or pipe");
}

void RefuseTerminal(const OutputOptions& options) {
  if (options.isNamed || !IsTerminal(StandardStream::Output)) return;
  throw WrongUsage("binary data is not written to a terminal",
                   "use -o FILE, or -o - to write it nevertheless");
}

void RefuseTerminal(const OutputOptions& options, std::span<const std::uint8_t> bytes) {
  if (std::ranges::any_of(bytes, IsControl)) RefuseTerminal(options);
}

bool WritesDataToStandardOutput(const CLI::App& command) {
  const CLI::Option* const option = command.get_option_no_throw("--output");
  if (option == nullptr || command.get_option_no_throw("IN") == nullptr) return false;
  for (const char* const name : {"--output-dir", "--suffix"}) {
    const CLI::Option* const other = command.get_option_no_throw(name);
    if (other != nullptr && other->count() > 0) return false;
  }
  const std::vector<std::string>& names = option->results();
  return names.empty() || std::any_of(names.begin(), names.end(), IsStandardOutput);
}

}  // namespace latchkey::cli
