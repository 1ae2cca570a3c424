// Memory that runs out on demand.
#pragma once

namespace latchkey::test {

// Makes the calling thread's nth allocation from now (the first is 1) raise std::bad_alloc; later
// ones succeed again. 0 cancels it. Replaces the test program's operator new.
void FailAllocation(int nth) noexcept;

// Whether the allocation to fail has not happened yet.
[[nodiscard]] bool AllocationFailurePending() noexcept;

// The number of blocks that the calling thread has allocated, minus those that it has freed.
[[nodiscard]] long LiveBlocks() noexcept;

}  // namespace latchkey::test
