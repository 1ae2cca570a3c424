// The processors that the process may use.
#pragma once

#include <cstddef>

namespace latchkey::cli {

// How many they are, as a shell or the system has limited them (taskset, an affinity mask); at
// least 1. The standard library counts those of the machine.
[[nodiscard]] std::size_t UsableProcessors() noexcept;

}  // namespace latchkey::cli
