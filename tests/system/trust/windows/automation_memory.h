// COM's allocator, which makes Automation's strings and arrays, failing on demand.
#pragma once

namespace latchkey::test {

// Makes the nth allocation of the calling thread from now (the first is 1) fail; later ones succeed
// again. 0 cancels it. From the first call on the system does not cache strings.
void FailAutomationAllocation(int nth);

// Whether the allocation to fail has not happened yet.
[[nodiscard]] bool AutomationFailurePending();

// The number of blocks allocated since the first call of either function and not freed.
[[nodiscard]] long LiveAutomationBlocks();

}  // namespace latchkey::test
