// Loads one library: load_library NAME as it is named, load_library NAME system from the system
// folder alone.
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/missing_library.h"
#include "platform/windows/system_library.h"

namespace {

bool LoadsFromSystem(const char* name) {
  try {
    return static_cast<bool>(latchkey::platform::LoadSystemLibrary(
        std::wstring(name, name + std::strlen(name)).c_str()));
  } catch (const latchkey::platform::MissingLibrary&) {
    return false;
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return EXIT_FAILURE;
  const bool loaded =
      count == 2 ? LoadLibraryA(arguments[1]) != nullptr : LoadsFromSystem(arguments[1]);
  return loaded ? EXIT_SUCCESS : EXIT_FAILURE;
}
