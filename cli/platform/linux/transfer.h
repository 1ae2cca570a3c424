// Reads and writes that did not pass a byte.
#pragma once

namespace latchkey::cli {

// Whether a read or write that has just failed can be made again, by errno: true after an
// interruption, and after a wait for `events` (POLLIN or POLLOUT) on a non-blocking descriptor.
// Otherwise false, with the reason in errno.
[[nodiscard]] bool CanRepeat(int descriptor, short events) noexcept;

}  // namespace latchkey::cli
