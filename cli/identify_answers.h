// What latchkey identify answers.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/ciphertext_sample.h"
#include "cli/group_lists.h"
#include "cli/identification.h"
#include "cli/json.h"

namespace latchkey::cli {

// The answer for samples that all have the same settings. The arguments must outlive it.
class JointAnswer {
 public:
  JointAnswer(const Identification& identification, const Candidates& candidates)
      : identification_(identification), candidates_(candidates) {}

  // The answer as a table. Requires a candidate.
  [[nodiscard]] std::string Text() const;
  [[nodiscard]] Json Object(std::span<const SampleBytes> samples) const;

 private:
  [[nodiscard]] std::string Line(const Candidate& candidate) const;

  const Identification& identification_;
  const Candidates& candidates_;
};

// The answer for samples of different settings: groups of samples for which the same settings are
// certain, the largest group first, and the samples without a certain answer. The arguments must
// outlive it.
class SortedAnswer {
 public:
  SortedAnswer(const Identification& identification, std::span<const SampleBytes> samples,
               std::vector<std::optional<Candidate>> answers);

  [[nodiscard]] bool HasGroups() const noexcept { return !groups_.empty(); }
  [[nodiscard]] bool IsComplete() const noexcept { return unsure_.empty(); }

  [[nodiscard]] std::string Text() const;
  [[nodiscard]] Json Object(std::size_t tried) const;

  // The files of the groups, and the others.
  [[nodiscard]] std::vector<FileGroup> Groups() const;
  [[nodiscard]] std::vector<std::string> NotIdentified() const { return FilesOf(unsure_); }

 private:
  using Group = std::vector<std::size_t>;  // indexes of samples

  [[nodiscard]] bool IsCertain(std::size_t i) const;
  [[nodiscard]] bool IsRestored(std::size_t i) const;
  [[nodiscard]] std::string OptionsOf(const Group& group) const;
  [[nodiscard]] std::vector<std::string> FilesOf(const Group& group) const;
  [[nodiscard]] std::string NameOf(std::size_t i) const;
  [[nodiscard]] std::string Remark(std::size_t i) const;
  [[nodiscard]] std::string Guess(std::size_t i) const;
  [[nodiscard]] Json Objects(const Group& group) const;

  const Identification& identification_;
  std::span<const SampleBytes> samples_;
  std::vector<std::optional<Candidate>> answers_;
  std::vector<Group> groups_;
  Group unsure_;
};

}  // namespace latchkey::cli
