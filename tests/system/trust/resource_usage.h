// The resources that this process uses.
#pragma once

#include <cstdint>

namespace latchkey::test {

struct ResourceUsage {
  std::uint64_t residentBytes = 0;
  std::uint64_t heapBytes = 0;       // in blocks that are not freed
  std::uint64_t systemHandles = 0;   // of the kernel's objects; on Linux open files
  std::int64_t providerHandles = 0;  // contexts, hashes and keys that the component has open
};

// Starts counting the provider's handles; none may be open. The component must be loaded. On Linux
// for the calling thread.
void CountProviderHandles();

[[nodiscard]] ResourceUsage CurrentUsage();

}  // namespace latchkey::test
