#include "cli/platform/arguments.h"

#include <windows.h>

#include <shellapi.h>

#include <span>

#include "cli/platform/windows/wide_text.h"

namespace latchkey::cli {

// The arguments of main were converted to the code page and lost characters that it lacks.
std::vector<std::string> ProgramArguments(int /*count*/, const char* const* /*arguments*/) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Narrowed(wide[i]));
  LocalFree(wide);
  return arguments;
}

}  // namespace latchkey::cli
