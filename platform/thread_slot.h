// One pointer per thread, made on first use and destroyed when the thread ends.
#pragma once

namespace latchkey::platform {

struct ThreadSlotFunctions {
  void* (*make)();
  void (*destroy)(void*) noexcept;
};

// The calling thread's value, made on its first use. There is one slot in the process; every call
// gives the same functions.
void* ThreadSlotValue(const ThreadSlotFunctions& functions);

// Destroys the values of all threads and gives the slot back: for a module about to be unloaded.
// Linux frees the slot with the thread and does nothing here.
void ReleaseThreadSlot() noexcept;

}  // namespace latchkey::platform
