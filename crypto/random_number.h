// The pseudo-random generator behind salt letters.
#pragma once

namespace latchkey {

// A whole number from `sngLow` to `sngHigh` inclusive. Every call first re-seeds the thread's
// generator with the number that BuildSeedText gives; the new state also depends on the operating
// system's random source, so that the clock does not tell the result. Raises what BuildSeedText
// raises, and InvalidProcedureCall when the system gives no random bytes.
[[nodiscard]] float RandomNumberInRange(float sngLow, float sngHigh);

}  // namespace latchkey
