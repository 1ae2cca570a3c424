// Memory that runs out on demand.
#pragma once

namespace latchkey::test {

// Makes the calling thread's nth allocation from now (the first is 1) raise std::bad_alloc; those
// after it succeed again. 0 calls it off. The test program's operator new is replaced for this.
void FailAllocation(int nth) noexcept;

// Whether an allocation that was to fail is still to come.
[[nodiscard]] bool AllocationFailurePending() noexcept;

// How many blocks the calling thread has allocated so far beyond those that it has freed.
[[nodiscard]] long LiveBlocks() noexcept;

}  // namespace latchkey::test
