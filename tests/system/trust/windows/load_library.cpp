// Loads one library.
//   load_library NAME                    by this name
//   load_library NAME system [FUNCTION]  only from the system folder, and finds one of its
//   functions
// Exits with status 1 and prints a line if it fails: tools/retry_start would repeat a silent
// failure.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "latchkey/fault.h"
#include "platform/windows/system_library.h"

namespace {

bool LoadsFromSystem(std::string_view name, const char* function) {
  try {
    const latchkey::platform::UniqueLibrary library =
        latchkey::platform::LoadSystemLibrary(std::wstring(name.begin(), name.end()).c_str());
    if (function != nullptr)
      static_cast<void>(latchkey::platform::FunctionOf(library.Get(), function));
    return true;
  } catch (const latchkey::Fault&) {
    return false;
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return EXIT_FAILURE;
  const bool loaded = count == 2
                          ? LoadLibraryA(arguments[1]) != nullptr
                          : LoadsFromSystem(arguments[1], count > 3 ? arguments[3] : nullptr);
  if (!loaded) std::puts("not found");
  return loaded ? EXIT_SUCCESS : EXIT_FAILURE;
}
