#include "cli/sorting.h"

#include <atomic>
#include <set>
#include <utility>

#include "crypto/engine/on_threads.h"
#include "platform/processors.h"

namespace latchkey::cli {
namespace {

using Answers = std::vector<std::optional<Candidate>>;

std::optional<Candidate> BestOf(Candidates candidates) {
  if (candidates.fitting.empty()) return std::nullopt;
  return std::move(candidates.fitting.front());
}

bool IsCertain(const std::optional<Candidate>& answer) { return answer && answer->IsCertain(); }

Answers Each(const CandidateSearch& search, std::span<const CiphertextSample> samples) {
  Answers answers(samples.size());
  std::atomic<std::size_t> next{0};
  RunOnThreads(std::min(platform::UsableProcessors(), samples.size()), [&] {
    for (std::size_t i = next++; i < samples.size(); i = next++) {
      answers[i] = BestOf(search.Find(samples.subspan(i, 1)));
    }
  });
  return answers;
}

}  // namespace

Answers Sort(const CandidateSearch& search, std::span<const CiphertextSample> samples) {
  Answers answers = Each(search, samples);
  std::set<std::size_t> certain;
  for (const auto& answer : answers) {
    if (IsCertain(answer)) certain.insert(answer->key);
  }
  const std::vector<std::size_t> keys(certain.begin(), certain.end());
  for (std::size_t i = 0; i < samples.size() && !keys.empty(); ++i) {
    if (IsCertain(answers[i])) continue;
    std::optional<Candidate> answer = BestOf(search.Find(samples.subspan(i, 1), keys));
    if (answer) answers[i] = std::move(answer);
  }
  return answers;
}

}  // namespace latchkey::cli
