// The hash kernels where one is faster than Nettle's (MD2 is not), in the form of Nettle's own
// descriptions (a context of context_size bytes, aligned as for any type, used by one thread at a
// time and wiped by its owner).
#pragma once

#include <nettle/nettle-meta.h>

namespace latchkey::provider {

extern const nettle_hash kMd4;
extern const nettle_hash kMd5;

// By SHA-1's own instructions where HasShaInstructions() tells of them, else Nettle's.
[[nodiscard]] const nettle_hash& Sha1() noexcept;

// Only for a machine that has those instructions, in a build for one.
extern const nettle_hash kSha1WithInstructions;

}  // namespace latchkey::provider
