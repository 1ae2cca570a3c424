#include "cli/platform/arguments.h"

#include <windows.h>

#include <shellapi.h>

#include "cli/platform/windows/handles.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {

// The arguments of main were converted to the code page and lost characters that it lacks.
std::vector<std::string> ProgramArguments(int /*count*/, const char* const* /*arguments*/) {
  int count = 0;
  const UniqueLocal<wchar_t**> wide(CommandLineToArgvW(GetCommandLineW(), &count));
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(platform::Narrowed(wide.Get()[i]));
  return arguments;
}

}  // namespace latchkey::cli
