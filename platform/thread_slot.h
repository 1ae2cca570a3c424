// One pointer per thread, made on first use and destroyed when the thread ends.
#pragma once

namespace latchkey::platform {

struct ThreadSlotFunctions {
  void* (*make)();
  void (*destroy)(void*) noexcept;
};

// The calling thread's value, made on its first use. The process has one slot; every call must pass
// the same functions.
void* ThreadSlotValue(const ThreadSlotFunctions& functions);

// Destroys the values of all threads and frees the slot: for a module about to be unloaded. Does
// nothing on Linux, which frees the slot with the thread.
void ReleaseThreadSlot() noexcept;

}  // namespace latchkey::platform
