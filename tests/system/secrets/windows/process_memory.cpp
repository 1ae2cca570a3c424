#include "tests/system/secrets/process_memory.h"

#include <windows.h>

#include "tests/system/secrets/piece_buffer.h"

namespace latchkey::test {
namespace {

PieceBuffer pieces;

// Read-only memory contains no copies. Omitting it saves most of the search: the system's own
// images.
bool IsWritable(const MEMORY_BASIC_INFORMATION& region) {
  constexpr DWORD kWritable =
      PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  return region.State == MEM_COMMIT && (region.Protect & kWritable) != 0 &&
         (region.Protect & PAGE_GUARD) == 0;
}

}  // namespace

// All ones: zeros are a register's initial state, which the processor does not save over earlier
// data.
void ForgetRegisters() noexcept {
  asm volatile(
      "pcmpeqd %%xmm0, %%xmm0\n\tpcmpeqd %%xmm1, %%xmm1\n\tpcmpeqd %%xmm2, %%xmm2\n\t"
      "pcmpeqd %%xmm3, %%xmm3\n\tpcmpeqd %%xmm4, %%xmm4\n\tpcmpeqd %%xmm5, %%xmm5\n\t"
      "pcmpeqd %%xmm6, %%xmm6\n\tpcmpeqd %%xmm7, %%xmm7\n\t" ::
          : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7");
}

void VisitProcessMemory(MemoryVisitor& visitor) {
  ForgetRegisters();
  const HANDLE self = ::GetCurrentProcess();
  const auto read = [self](std::uintptr_t address, std::uint8_t* target, std::size_t size) {
    SIZE_T got = 0;
    const bool done =
        ::ReadProcessMemory(self, reinterpret_cast<const void*>(address), target, size, &got) != 0;
    return done ? std::size_t{got} : std::size_t{0};
  };
  MEMORY_BASIC_INFORMATION region;
  std::uintptr_t at = 0;
  while (::VirtualQuery(reinterpret_cast<const void*>(at), &region, sizeof region) != 0) {
    const auto begin = reinterpret_cast<std::uintptr_t>(region.BaseAddress);
    const std::uintptr_t end = begin + region.RegionSize;
    if (IsWritable(region)) pieces.VisitRange(begin, end, visitor, read);
    if (end <= at) break;
    at = end;
  }
}

}  // namespace latchkey::test
