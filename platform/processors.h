// The processors that the process may use.
#pragma once

#include <cstddef>

namespace latchkey::platform {

// Their number, at least 1, with the limits of a shell or the system (taskset, an affinity mask).
// The standard library counts those of the machine.
[[nodiscard]] std::size_t UsableProcessors() noexcept;

}  // namespace latchkey::platform
