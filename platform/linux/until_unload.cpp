#include "platform/linux/until_unload.h"

#include <atomic>

namespace latchkey::platform {
namespace {

std::atomic<UnloadStep*> lastStep{nullptr};
std::atomic<bool> processEnds{false};

// exit() destroys objects of static duration first and then runs the endings of the libraries;
// dlclose() runs the library's ending first. So the ending finds this object gone at the process's
// end only. It is made by the first step, since what is made while the process is being loaded is
// destroyed by the ending.
struct EndOfProcess {
  EndOfProcess() = default;
  EndOfProcess(const EndOfProcess&) = delete;
  EndOfProcess& operator=(const EndOfProcess&) = delete;
  ~EndOfProcess() { processEnds = true; }
};

[[gnu::destructor]] void EndModule() noexcept {
  if (processEnds) return;
  UnloadStep* step = lastStep.exchange(nullptr);
  while (step != nullptr) {
    UnloadStep* const next = step->next;
    step->run(*step);
    step = next;
  }
}

}  // namespace

void RunAtUnload(UnloadStep& step) noexcept {
  static const EndOfProcess endOfProcess;
  step.next = lastStep.load();
  while (!lastStep.compare_exchange_weak(step.next, &step)) continue;
}

}  // namespace latchkey::platform
