// Sorting ciphertexts of different settings by those that fit each.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "crypto/engine/candidates.h"

namespace latchkey::cli {

// For each sample, in order, the best candidate: first of all keys, for each sample alone. A sample
// without a certain answer is then compared only under the keys that are certain for others, which
// take the prior of all keys. Nothing if no key fits.
[[nodiscard]] std::vector<std::optional<Candidate>> Sort(const CandidateSearch& search,
                                                         std::span<const CiphertextSample> samples);

}  // namespace latchkey::cli
