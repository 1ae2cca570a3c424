// The hash kernels that are faster than Nettle's (none for MD2), described like Nettle's own.
// Contexts have context_size bytes, are aligned for any type, are used by one thread at a time and
// are wiped by their owner.
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
