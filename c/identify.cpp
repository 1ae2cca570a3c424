// The C interface: the settings that ciphertexts were made with.
#include <algorithm>
#include <utility>
#include <vector>

#include "c/call.h"
#include "c/records.h"
#include "crypto/engine/candidates.h"

namespace latchkey::c {
namespace {

latchkey_settings SettingsOf(const KeySettings& settings) noexcept {
  latchkey_settings result = LATCHKEY_SETTINGS_INIT;
  result.hash = settings.hash;
  result.cipher = settings.cipher;
  result.provider = settings.UsesEnhancedProvider() ? LATCHKEY_ENHANCED : LATCHKEY_BASE;
  result.key_bits = settings.keyBits;
  result.rc2_effective_bits = settings.rc2EffectiveBits;
  return result;
}

latchkey_candidate CandidateOf(const Candidate& candidate) noexcept {
  return {candidate.probability,
          candidate.evidence.padding ? static_cast<std::int32_t>(*candidate.evidence.padding) : -1,
          SettingsOf(candidate.settings.front())};
}

std::vector<CiphertextSample> SamplesOf(const Records& records) {
  std::vector<CiphertextSample> samples;
  samples.reserve(records.count);
  for (std::size_t i = 0; i < records.count; ++i) {
    samples.push_back(CiphertextSample::Of(records[i]));
  }
  return samples;
}

bool IsRoomGood(const latchkey_candidate* candidates, std::size_t count, const Memory& password,
                const latchkey_records& samples) noexcept {
  if (count > PTRDIFF_MAX / sizeof *candidates) return false;
  const Memory room(candidates, count * sizeof *candidates);
  return room.IsGood() && !room.Overlaps(password) &&
         std::ranges::none_of(InputsOf(samples),
                              [&](const Memory& in) { return room.Overlaps(in); });
}

}  // namespace
}  // namespace latchkey::c

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts

int32_t latchkey_identify(const latchkey_records* samples, const uint8_t* password,
                          size_t password_length, size_t candidate_size,
                          latchkey_candidate* candidates, size_t* candidate_count,
                          latchkey_failure* failure) {
  const std::size_t room = candidate_count == nullptr ? 0 : std::exchange(*candidate_count, 0);
  return Call(failure, latchkey::trap::kDecryptData, [&]() -> Outcome {
    const Memory given(password, password_length);
    latchkey::Records records;
    if (candidate_count == nullptr || candidate_size != sizeof *candidates || !given.IsGood() ||
        !ReadRecords(samples, records) || !IsRoomGood(candidates, room, given, *samples)) {
      return LATCHKEY_BAD_ARGUMENT;
    }
    const auto found = latchkey::FindCandidates(SamplesOf(records), given.Bytes()).fitting;
    *candidate_count = std::min(room, found.size());
    std::transform(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(*candidate_count),
                   candidates, CandidateOf);
    return LATCHKEY_OK;
  });
}
