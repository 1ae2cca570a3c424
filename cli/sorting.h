// Sorting ciphertexts of different settings by those that fit each.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "crypto/engine/candidates.h"

namespace latchkey::cli {

// Returns the best candidate for each sample, in order; nothing for a sample that no key fits. Each
// sample is first judged alone under all keys. A sample without a certain answer is then judged
// under only the keys that are certain for other samples; the prior of all keys is divided among
// these.
[[nodiscard]] std::vector<std::optional<Candidate>> Sort(const CandidateSearch& search,
                                                         std::span<const CiphertextSample> samples);

}  // namespace latchkey::cli
