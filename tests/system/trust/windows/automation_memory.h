// COM's allocator, from which strings and arrays of Automation come, running out on demand.
#pragma once

namespace latchkey::test {

// Lets the nth allocation of the calling thread from now (the first is 1) give nothing; those after
// it succeed again. 0 calls it off. Strings are not kept by the system's cache from then on.
void FailAutomationAllocation(int nth);

// Whether an allocation that was to fail is still to come.
[[nodiscard]] bool AutomationFailurePending();

// The blocks that were allocated since the first call of either function and are not freed.
[[nodiscard]] long LiveAutomationBlocks();

}  // namespace latchkey::test
