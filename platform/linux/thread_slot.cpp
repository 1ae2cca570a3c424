#include "platform/thread_slot.h"

namespace latchkey::platform {
namespace {

// Trivial, so that it can be read after the thread's other objects are destroyed: objects of static
// duration outlive those of the main thread.
thread_local void* threadValue = nullptr;

// Destroys the thread's value with the thread.
class ThreadEnd {
 public:
  explicit ThreadEnd(const ThreadSlotFunctions& functions) noexcept : destroy_(functions.destroy) {}
  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;
  ~ThreadEnd() {
    void* const value = threadValue;
    threadValue = nullptr;
    if (value != nullptr) destroy_(value);
  }

 private:
  void (*destroy_)(void*) noexcept;
};

}  // namespace

// A value made after the thread's clean-up stays until the process ends.
void* ThreadSlotValue(const ThreadSlotFunctions& functions) {
  if (threadValue == nullptr) {
    thread_local const ThreadEnd threadEnd(functions);
    threadValue = functions.make();
  }
  return threadValue;
}

void ReleaseThreadSlot() noexcept {}

}  // namespace latchkey::platform
