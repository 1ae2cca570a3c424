#include "cli/identify_answers.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/algorithm_names.h"
#include "cli/visible_text.h"

namespace latchkey::cli {
namespace {

// Whether it is less than one unit of the table's last digit.
bool IsNegligible(double probability) { return probability < 0.000'001; }

std::string Percent(double probability) {
  if (IsNegligible(probability)) return "< 0.0001 %";
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%8.4f %%", probability * 100);
  return text.data();
}

std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text + "  ";
}

std::string Providers(const Candidate& candidate) {
  std::string names;
  for (const KeySettings& settings : candidate.settings) {
    names += (names.empty() ? "" : ", ") + ProviderName(settings.UsesEnhancedProvider());
  }
  return names;
}

std::string CipherOf(const KeySettings& settings) {
  std::string text = CipherName(settings.cipher);
  if (settings.keyBits != 0) text += ", " + std::to_string(settings.keyBits) + "-bit key";
  if (settings.rc2EffectiveBits != 0) {
    text += ", " + std::to_string(settings.rc2EffectiveBits) + " bits";
  }
  return text;
}

}  // namespace

std::string JointAnswer::Text() const {
  const Candidate& best = candidates_.fitting.front();
  std::string text = "PROBABILITY  PROVIDER        HASH  CIPHER            PADDING  PASSWORD\n";
  std::size_t left = candidates_.fitting.size();
  for (const Candidate& candidate : candidates_.fitting) {
    if (&candidate != &best && IsNegligible(candidate.probability)) break;
    text += Line(candidate);
    --left;
  }
  if (left > 0) {
    text += Padded(Percent(0), 11) + "each of the others that fit: " + std::to_string(left) + "\n";
  }
  text += Padded(Percent(candidates_.noneProbability), 11) + "none of the " +
          std::to_string(candidates_.tried) + " keys tried\n";
  if (best.evidence.restored > 0) {
    text += "trailing spaces put back: " + std::to_string(best.evidence.restored) + "\n";
  }
  return text + Confidence(best) + ": " + identification_.OptionsFor(best) + "\n";
}

Json JointAnswer::Object(std::span<const SampleBytes> samples) const {
  Json files = Json::array();
  std::uint64_t bytes = 0;
  for (const SampleBytes& sample : samples) {
    bytes += sample.length;
    if (files.empty() || files.back() != sample.file) files.push_back(sample.file);
  }
  Json list = Json::array();
  for (const Candidate& each : candidates_.fitting) list.push_back(identification_.ObjectOf(each));
  return {{"files", files},     {"ciphertexts", samples.size()},
          {"bytes", bytes},     {"keys_tried", candidates_.tried},
          {"candidates", list}, {"none_probability", candidates_.noneProbability}};
}

std::string JointAnswer::Line(const Candidate& candidate) const {
  const KeySettings& settings = candidate.settings.front();
  const EncodedPassword& form = identification_.FormOf(candidate);
  const std::optional<unsigned> padding = candidate.evidence.padding;
  return Padded(Percent(candidate.probability), 11) + Padded(Providers(candidate), 14) +
         Padded(HashName(settings.hash), 4) + Padded(CipherOf(settings), 16) +
         Padded(padding ? std::to_string(*padding) : "-", 7) + form.encoding +
         (form.hasNul ? " + NUL" : "") + "\n";
}

SortedAnswer::SortedAnswer(const Identification& identification,
                           std::span<const SampleBytes> samples,
                           std::vector<std::optional<Candidate>> answers)
    : identification_(identification), samples_(samples), answers_(std::move(answers)) {
  std::map<std::size_t, Group> byKey;
  for (std::size_t i = 0; i < answers_.size(); ++i) {
    if (IsCertain(i)) {
      byKey[answers_[i]->key].push_back(i);
    } else {
      unsure_.push_back(i);
    }
  }
  for (auto& [key, group] : byKey) groups_.push_back(std::move(group));
  std::ranges::stable_sort(groups_, std::ranges::greater{}, &Group::size);
}

std::vector<FileGroup> SortedAnswer::Groups() const {
  std::vector<FileGroup> groups;
  for (const Group& group : groups_) groups.push_back({OptionsOf(group), FilesOf(group)});
  return groups;
}

std::vector<std::string> SortedAnswer::FilesOf(const Group& group) const {
  std::vector<std::string> files;
  for (const std::size_t i : group) files.push_back(samples_[i].file);
  return files;
}

std::string SortedAnswer::Text() const {
  std::string text;
  for (const Group& group : groups_) {
    text += std::to_string(group.size()) + " practically certain: " + OptionsOf(group) + "\n";
    for (const std::size_t i : group) text += "  " + NameOf(i) + Remark(i) + "\n";
  }
  if (!unsure_.empty()) text += std::to_string(unsure_.size()) + " not identified:\n";
  for (const std::size_t i : unsure_) text += "  " + NameOf(i) + Guess(i) + "\n";
  return text;
}

Json SortedAnswer::Object(std::size_t tried) const {
  Json groups = Json::array();
  for (const Group& group : groups_) {
    Json object = identification_.ObjectOf(*answers_[group.front()]);
    for (const char* const each :
         {"padding", "restored", "evidence_bits", "probability", "confidence"}) {
      object.erase(each);
    }
    object["options"] = OptionsOf(group);
    object["ciphertexts"] = Objects(group);
    groups.push_back(object);
  }
  return {{"ciphertexts", samples_.size()},
          {"keys_tried", tried},
          {"groups", groups},
          {"not_identified", Objects(unsure_)}};
}

bool SortedAnswer::IsCertain(std::size_t i) const {
  return answers_[i] && answers_[i]->IsCertain();
}

bool SortedAnswer::IsRestored(std::size_t i) const {
  return answers_[i] && answers_[i]->evidence.restored > 0;
}

std::string SortedAnswer::OptionsOf(const Group& group) const {
  const auto restored = std::ranges::find_if(group, [&](std::size_t i) { return IsRestored(i); });
  const std::size_t member = restored != group.end() ? *restored : group.front();
  return identification_.OptionsFor(*answers_[member]);
}

std::string SortedAnswer::NameOf(std::size_t i) const {
  const SampleBytes& sample = samples_[i];
  const std::string file = WithoutControls(sample.file);
  return sample.line ? file + ", line " + std::to_string(*sample.line) : file;
}

std::string SortedAnswer::Remark(std::size_t i) const {
  return IsRestored(i) ? " (trailing spaces put back)" : "";
}

std::string SortedAnswer::Guess(std::size_t i) const {
  if (!answers_[i] || answers_[i]->probability < 0.5) return "";
  return std::string(" (") + Confidence(*answers_[i]) + ": " +
         identification_.OptionsFor(*answers_[i]) + ")";
}

Json SortedAnswer::Objects(const Group& group) const {
  Json list = Json::array();
  for (const std::size_t i : group) {
    Json object{{"file", samples_[i].file}};
    if (samples_[i].line) object["line"] = *samples_[i].line;
    object["bytes"] = samples_[i].length;
    if (answers_[i]) {
      object["probability"] = answers_[i]->probability;
      object["restored"] = IsRestored(i);
      if (!IsCertain(i)) object["options"] = identification_.OptionsFor(*answers_[i]);
    }
    list.push_back(object);
  }
  return list;
}

}  // namespace latchkey::cli
