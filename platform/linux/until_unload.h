// An object of static duration that outlives all others, and goes when the library is unloaded.
#pragma once

#include "platform/never_destroyed.h"

namespace latchkey::platform {

// Something to be done when the module is unloaded.
struct UnloadStep {
  void (*run)(UnloadStep& step) noexcept = nullptr;
  UnloadStep* next = nullptr;  // the list's
};

// Runs the step when the module is unloaded by a process that goes on, the last one added first;
// never at the process's end. The step must live until then. Any thread may call it.
void RunAtUnload(UnloadStep& step) noexcept;

// Like NeverDestroyed, for what owns memory: destroyed when the module is unloaded. No thread uses
// it then. Its destructor must use nothing else of the component, which may be gone.
template <class T>
class UntilUnload : private UnloadStep {
 public:
  template <class... Arguments>
  explicit UntilUnload(Arguments&&... arguments) : object_(std::forward<Arguments>(arguments)...) {
    run = [](UnloadStep& step) noexcept { static_cast<UntilUnload&>(step).Get().~T(); };
    RunAtUnload(*this);
  }
  UntilUnload(const UntilUnload&) = delete;
  UntilUnload& operator=(const UntilUnload&) = delete;
  ~UntilUnload() = default;

  [[nodiscard]] T& Get() noexcept { return object_.Get(); }

 private:
  NeverDestroyed<T> object_;
};

}  // namespace latchkey::platform
