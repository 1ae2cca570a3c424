#include "cli/platform/arguments.h"

#include <windows.h>

#include <shellapi.h>

#include <span>

#include "platform/windows/wide_text.h"

namespace latchkey::cli {

// What main is given went through the code page and lost the characters that it does not have.
std::vector<std::string> ProgramArguments(int /*count*/, const char* const* /*arguments*/) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(platform::Narrowed(wide[i]));
  LocalFree(wide);
  return arguments;
}

}  // namespace latchkey::cli
