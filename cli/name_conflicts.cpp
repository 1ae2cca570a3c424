#include "cli/name_conflicts.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace latchkey::cli {
namespace {

constexpr std::uint64_t kFactsAtOnce = std::uint64_t{1} << 20;

using Iterator = std::vector<Fact>::const_iterator;
using ReportPair = std::function<void(const Fact&, const Fact&)>;

// Facts with one hash, sorted by kind.
void Examine(Iterator begin, Iterator end, const ReportPair& report) {
  const auto first = [&](FactKind kind) {
    return std::find_if(begin, end, [&](const Fact& fact) { return fact.kind == kind; });
  };
  const auto output = first(FactKind::Output);
  if (output != end) {
    for (auto other = output + 1; other != end; ++other) {
      if (other->kind <= FactKind::FolderOutput) report(*output, *other);
    }
  }
  const auto input = first(FactKind::Input);
  const auto existing = first(FactKind::ExistingOutput);
  if (input != end && existing != end) report(*input, *existing);
}

void ExamineAll(std::vector<Fact>& facts, const ReportPair& report) {
  std::ranges::sort(facts, {},
                    [](const Fact& fact) { return std::tuple(fact.hash, fact.kind, fact.file); });
  for (auto begin = facts.cbegin(); begin != facts.cend();) {
    const auto end = std::find_if(begin, facts.cend(),
                                  [&](const Fact& fact) { return fact.hash != begin->hash; });
    Examine(begin, end, report);
    begin = end;
  }
}

}  // namespace

void NameConflicts::Find(const ReportPair& report) {
  facts_.Finish();
  const std::uint64_t rounds = facts_.Size() / sizeof(Fact) / kFactsAtOnce + 1;
  std::vector<Fact> chosen;
  for (std::uint64_t round = 0; round < rounds; ++round) {
    chosen.clear();
    SpoolReader reader(facts_);
    for (Fact fact; reader.Get(fact);) {
      if (fact.hash % rounds == round) chosen.push_back(fact);
    }
    ExamineAll(chosen, report);
  }
}

}  // namespace latchkey::cli
