#include "tests/support/failing_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

#include "tests/support/freed_memory.h"

namespace latchkey::test {
namespace {

thread_local int allocationsToFailure = 0;
thread_local long liveBlocks = 0;

bool FailsNow() noexcept { return allocationsToFailure > 0 && --allocationsToFailure == 0; }

}  // namespace

void FailAllocation(int nth) noexcept { allocationsToFailure = nth; }

bool AllocationFailurePending() noexcept { return allocationsToFailure > 0; }

long LiveBlocks() noexcept { return liveBlocks; }

// Zeroed, so that the parts of a block that its owner never writes do not show data of an earlier
// owner.
static void* Allocate(std::size_t size) {
  void* const memory = FailsNow() ? nullptr : std::calloc(size > 0 ? size : 1, 1);
  if (memory == nullptr) throw std::bad_alloc();
  ++liveBlocks;
  return memory;
}

static void Free(void* memory) noexcept {
  if (memory != nullptr) --liveBlocks;
  std::free(memory);
}

}  // namespace latchkey::test

void* operator new(std::size_t size) { return latchkey::test::Allocate(size); }
void operator delete(void* memory) noexcept { latchkey::test::Free(memory); }
void operator delete(void* memory, std::size_t size) noexcept {
  latchkey::test::FreedMemory::Inspect(memory, size);
  latchkey::test::Free(memory);
}
// The sanitizers' own forms for arrays and without exceptions do not call those above.
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete[](void* memory) noexcept { operator delete(memory); }
void operator delete[](void* memory, std::size_t size) noexcept { operator delete(memory, size); }
void* operator new(std::size_t size, const std::nothrow_t& /*form*/) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& form) noexcept {
  return operator new(size, form);
}
