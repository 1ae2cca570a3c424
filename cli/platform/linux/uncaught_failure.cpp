#include "cli/platform/uncaught_failure.h"

#include <unistd.h>

#include <exception>
#include <new>

#include "cli/platform/linux/interruption.h"
#include "cli/platform/terminal.h"

namespace latchkey::cli {
namespace {

[[noreturn]] void EndProcess(const char* text) noexcept {
  for (const char* const part : {"latchkey: ", text, "\n"}) WriteText(StandardStream::Error, part);
  UndoUnfinished();
  ::_exit(1);
}

[[noreturn]] void EndWithoutMemory() { EndProcess(kOutOfMemory); }

[[noreturn]] void EndUncaught() {
  // The run-time calls std::terminate without an exception when it has no memory for one.
  if (!std::current_exception()) EndWithoutMemory();
  try {
    throw;
  } catch (const std::bad_alloc&) {
    EndWithoutMemory();
  } catch (...) {
    EndProcess("failed and cannot continue");
  }
}

// Runs before the constructors of all other objects of the program.
[[gnu::constructor(101)]] void BeginStartup() { std::set_new_handler(EndWithoutMemory); }

}  // namespace

void BeginMain() noexcept {
  std::set_new_handler(nullptr);
  std::set_terminate(EndUncaught);
}

}  // namespace latchkey::cli
