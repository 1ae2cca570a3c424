// Reads and writes that transferred no byte.
#pragma once

namespace latchkey::cli {

// Whether a read or write that has just failed can be repeated, by errno: true after an
// interruption, and after waiting for `events` (POLLIN or POLLOUT) on a non-blocking descriptor.
// Otherwise false, with the reason in errno.
[[nodiscard]] bool CanRepeat(int descriptor, short events) noexcept;

}  // namespace latchkey::cli
