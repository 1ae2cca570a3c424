#include "platform/thread_slot.h"

#include <windows.h>

#include <atomic>
#include <new>

// Fiber-local storage, whose callback runs when a thread ends and when the slot is freed. Not a
// thread_local object with a destructor: its clean-up is registered with the C run-time of this DLL
// and keeps the DLL loaded.
namespace latchkey::platform {
namespace {

std::atomic<DWORD> slotIndex{FLS_OUT_OF_INDEXES};
std::atomic<void (*)(void*) noexcept> destroyValue{nullptr};

void WINAPI DestroyThreadValue(void* value) {
  if (value != nullptr) destroyValue.load()(value);
}

// Two threads may allocate at once; the second one's slot is freed unused.
DWORD SlotIndex(const ThreadSlotFunctions& functions) {
  DWORD index = slotIndex.load();
  if (index != FLS_OUT_OF_INDEXES) return index;
  destroyValue.store(functions.destroy);
  const DWORD fresh = FlsAlloc(DestroyThreadValue);
  if (fresh == FLS_OUT_OF_INDEXES) throw std::bad_alloc();
  if (slotIndex.compare_exchange_strong(index, fresh)) return fresh;
  FlsFree(fresh);
  return index;
}

}  // namespace

void* ThreadSlotValue(const ThreadSlotFunctions& functions) {
  const DWORD index = SlotIndex(functions);
  if (void* const value = FlsGetValue(index); value != nullptr) return value;
  void* const value = functions.make();
  if (!FlsSetValue(index, value)) {
    functions.destroy(value);
    throw std::bad_alloc();
  }
  return value;
}

void ReleaseThreadSlot() noexcept {
  const DWORD index = slotIndex.exchange(FLS_OUT_OF_INDEXES);
  if (index != FLS_OUT_OF_INDEXES) FlsFree(index);
}

}  // namespace latchkey::platform
