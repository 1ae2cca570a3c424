// Writes what stands beside the command: latchkey_manual page | completion
#include <iostream>
#include <string_view>

#include "cli/command_line.h"
#include "cli/manual/bash_completion.h"
#include "cli/manual/manual_page.h"

int main(int argc, char** argv) {
  const std::string_view wanted = argc == 2 ? argv[1] : "";
  latchkey::cli::CommandLine commandLine;
  if (wanted == "page") {
    std::cout << latchkey::cli::ManualPage(commandLine.Parser(), LATCHKEY_VERSION);
  } else if (wanted == "completion") {
    std::cout << latchkey::cli::BashCompletion(commandLine.Parser());
  } else {
    std::cerr << "usage: latchkey_manual page|completion\n";
    return 2;
  }
  return std::cout.flush() ? 0 : 1;
}
