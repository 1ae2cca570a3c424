// Evidence that data is meaningful rather than random.
#pragma once

#include <cstdint>
#include <span>

namespace latchkey {

// The base-2 logarithm of the ratio of two probabilities of the data: as meaningful data, and as
// the random bytes that a wrong key gives. 10 means that meaningful data is about a thousand times
// more probable. 0 for no data; never below -2. Meaningful data is assumed to be:
//
// - English text half the time: each byte by its frequency there;
// - data in which some bytes are more frequent than others a quarter of the time: each byte by its
//   frequency so far, after Krichevsky and Trofimov;
// - random bytes, such as compressed data, a quarter of the time.
[[nodiscard]] double TextEvidence(std::span<const std::uint8_t> data);

}  // namespace latchkey
