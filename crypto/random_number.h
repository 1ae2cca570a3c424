// The pseudo-random generator for salt letters.
#pragma once

namespace latchkey {

// A whole number from `sngLow` to `sngHigh` inclusive. Every call first reseeds the thread's
// generator with the number from BuildSeedText; the new state also depends on the operating
// system's random source, so that the result cannot be computed from the clock. Raises the faults
// of BuildSeedText, and InvalidProcedureCall if the system returns no random bytes.
[[nodiscard]] float RandomNumberInRange(float sngLow, float sngHigh);

}  // namespace latchkey
