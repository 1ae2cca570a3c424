// Loads the crashing library and ends it.
//   crashing_end module|thread|process   the library crashes in this one
//   crashing_end quietly                 in none
#include <cstdlib>
#include <string_view>
#include <thread>

#include "tests/system/trust/program_start.h"
#include "tests/system/trust/windows/fatal_exceptions.h"

namespace latchkey::test {
namespace {

int Run(std::string_view end) {
  const HMODULE library = LoadLibraryW(L"crashing_library.dll");
  const auto crash =
      reinterpret_cast<void (*)(DWORD)>(reinterpret_cast<void*>(GetProcAddress(library, "Crash")));
  if (crash == nullptr) return EXIT_FAILURE;
  if (end == "module" || end == "process") crash(DLL_PROCESS_DETACH);
  if (end == "thread") crash(DLL_THREAD_DETACH);
  std::thread([] {}).join();
  if (end != "process") FreeLibrary(library);
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  latchkey::test::SayThatItBegins("crashing_end");
  return count == 2 ? latchkey::test::Run(arguments[1]) : EXIT_FAILURE;
}
