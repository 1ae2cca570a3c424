// The hash kernels that are faster than Nettle's (none for MD2), in the form of Nettle's own
// descriptions (a context of context_size bytes, aligned as for any type, used by one thread at a
// time and wiped by its owner).
#pragma once

#include <nettle/nettle-meta.h>

namespace latchkey::provider {

extern const nettle_hash kMd4;
extern const nettle_hash kMd5;

// With SHA-1 instructions if HasShaInstructions(), otherwise Nettle's.
[[nodiscard]] const nettle_hash& Sha1() noexcept;

// Requires a machine and a build with those instructions.
extern const nettle_hash kSha1WithInstructions;

}  // namespace latchkey::provider
