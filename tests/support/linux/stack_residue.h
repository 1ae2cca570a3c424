// Finds data that a function leaves on the stack below its caller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace latchkey::test {

// The number of bytes below the caller of `run` that differ between a run after prepare(0) and one
// after prepare(1). Each run has a fresh stack at the same addresses, and the prepared data must
// also be at the same addresses, so that only its contents can make a difference. A run before
// these two does the process's one-time work.
std::size_t DifferingStackBytes(const std::function<void(int which)>& prepare,
                                const std::function<void()>& run);

// Counts `pattern` on the stack below the caller of `run`, which has a fresh stack.
std::size_t StackCopiesOf(std::span<const std::uint8_t> pattern, const std::function<void()>& run);

}  // namespace latchkey::test
