#include "bench/component/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> count;

}  // namespace

void* operator new(std::size_t size) {
  count.fetch_add(1, std::memory_order_relaxed);
  if (void* const memory = std::malloc(size != 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace latchkey::bench {

std::uint64_t AllocationCount() noexcept { return count.load(std::memory_order_relaxed); }

}  // namespace latchkey::bench
