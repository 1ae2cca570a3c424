#include "cli/identification.h"

#include <nlohmann/json.hpp>

#include "cli/algorithm_names.h"
#include "cli/key_options.h"

namespace latchkey::cli {
namespace {

CandidateSearch SearchOf(const std::vector<EncodedPassword>& forms) {
  std::vector<std::span<const std::uint8_t>> passwords;
  passwords.reserve(forms.size());
  for (const EncodedPassword& form : forms) passwords.emplace_back(form.bytes);
  return CandidateSearch(passwords);
}

}  // namespace

Identification::Identification(const PasswordOptions& options)
    : forms_(ReadPasswordForms(options)), search_(SearchOf(forms_)) {}

std::string Identification::OptionsFor(const Candidate& candidate) const {
  const EncodedPassword& form = FormOf(candidate);
  std::string options = OptionsOf(candidate.settings.front());
  if (form.encoding != kBytesEncoding) options += " --password-encoding " + form.encoding;
  if (form.hasNul) options += " --password-nul";
  if (candidate.evidence.restored > 0) options += " --restore-spaces";
  return options;
}

Json Identification::ObjectOf(const Candidate& candidate) const {
  const KeySettings& settings = candidate.settings.front();
  const EncodedPassword& form = FormOf(candidate);
  Json object;
  AddSettings(object, settings);
  Json providers = Json::array();
  for (const KeySettings& each : candidate.settings) {
    providers.push_back(ProviderName(each.UsesEnhancedProvider()));
  }
  object["providers"] = providers;
  object["password_encoding"] = form.encoding;
  object["password_nul"] = form.hasNul;
  if (candidate.evidence.padding) object["padding"] = *candidate.evidence.padding;
  object["restored"] = candidate.evidence.restored;
  object["evidence_bits"] = candidate.evidence.bits;
  object["probability"] = candidate.probability;
  object["confidence"] = Confidence(candidate);
  object["certain"] = candidate.IsCertain();
  object["options"] = OptionsFor(candidate);
  return object;
}

const char* Confidence(const Candidate& candidate) noexcept {
  if (candidate.IsCertain()) return "practically certain";
  if (candidate.evidence.unlike > 0) return "not for all";
  if (candidate.probability >= 0.99) return "very likely";
  if (candidate.probability >= 0.9) return "likely";
  if (candidate.probability >= 0.5) return "more likely than not";
  return "a guess";
}

}  // namespace latchkey::cli
