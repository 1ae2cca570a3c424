#include "platform/large_memory.h"

#include <sys/mman.h>

#include <cstdint>
#include <memory>

namespace latchkey::platform {
namespace {

// The size of a huge page. Memory below twice this size may not contain a whole one.
constexpr std::size_t kHugePage = std::size_t{2} << 20;

}  // namespace

void ExpectFilling(void* memory, std::size_t size) noexcept {
  if (size < 2 * kHugePage) return;
  if (std::align(kHugePage, kHugePage, memory, size) == nullptr) return;
  static_cast<void>(::madvise(memory, size - size % kHugePage, MADV_HUGEPAGE));
}

}  // namespace latchkey::platform
