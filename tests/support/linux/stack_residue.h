// What a function leaves on the stack beneath its caller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace latchkey::test {

// How many bytes beneath the caller of `run` differ between a run after prepare(0) and one after
// prepare(1). `run` has a fresh stack at the same addresses each time, so what differs depends on
// what was prepared, which must stand at the same addresses too. There is a run before these two,
// for what the process does only once.
std::size_t DifferingStackBytes(const std::function<void(int which)>& prepare,
                                const std::function<void()>& run);

// Counts `pattern` on the stack below the caller of `run`, which has a fresh stack.
std::size_t StackCopiesOf(std::span<const std::uint8_t> pattern, const std::function<void()>& run);

}  // namespace latchkey::test
