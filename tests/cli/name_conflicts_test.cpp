#include "cli/name_conflicts.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

namespace latchkey::cli {
namespace {

using Pairs = std::set<std::pair<std::uint64_t, std::uint64_t>>;

Pairs FoundIn(NameConflicts& conflicts) {
  Pairs found;
  conflicts.Find(
      [&](const Fact& left, const Fact& right) { found.emplace(left.file, right.file); });
  return found;
}

TEST(NameConflictsTest, FindsConflictsAmongFactsWithTheSameHash) {
  NameConflicts conflicts;
  conflicts.Add({7, 1, FactKind::Output});
  conflicts.Add({7, 2, FactKind::Output});
  conflicts.Add({8, 3, FactKind::FolderOutput});
  conflicts.Add({8, 4, FactKind::Output});
  conflicts.Add({9, 5, FactKind::ExistingOutput});
  conflicts.Add({9, 6, FactKind::Input});
  EXPECT_EQ(FoundIn(conflicts), (Pairs{{1, 2}, {4, 3}, {6, 5}}));
}

TEST(NameConflictsTest, AcceptsLinksToOneInputAndSharedFolders) {
  NameConflicts conflicts;
  conflicts.Add({7, 1, FactKind::Input});
  conflicts.Add({7, 2, FactKind::Input});
  conflicts.Add({8, 3, FactKind::FolderOutput});
  conflicts.Add({8, 4, FactKind::FolderOutput});
  conflicts.Add({9, 5, FactKind::ExistingOutput});
  conflicts.Add({9, 6, FactKind::ExistingOutput});
  conflicts.Add({10, 7, FactKind::Output});
  conflicts.Add({10, 8, FactKind::Input});
  conflicts.Add({11, 9, FactKind::Output});
  conflicts.Add({11, 10, FactKind::ExistingOutput});
  EXPECT_EQ(FoundIn(conflicts), Pairs());
}

// Three rounds are needed for this number of facts.
TEST(NameConflictsTest, FindsConflictsAmongMillionsOfFacts) {
  constexpr std::uint64_t kCount = 2'500'000;
  NameConflicts conflicts;
  for (std::uint64_t i = 0; i < kCount; ++i) conflicts.Add({i, i, FactKind::Output});
  EXPECT_EQ(FoundIn(conflicts), Pairs());
  Pairs expected;
  for (const std::uint64_t file : {std::uint64_t{0}, kCount - 3, kCount - 2, kCount - 1}) {
    conflicts.Add({file, kCount + file, FactKind::Output});
    expected.emplace(file, kCount + file);
  }
  EXPECT_EQ(FoundIn(conflicts), expected);
}

TEST(SpoolTest, ReturnsDataThatCrossesTheEndOfItsBuffer) {
  Spool spool;
  const auto textOf = [](std::size_t number) { return std::string(number * 37 % 5000, 'x'); };
  constexpr std::size_t kCount = 500;
  std::uint64_t middle = 0;
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i == kCount / 2) middle = spool.Size();
    spool.Put(std::uint64_t{i});
    spool.PutText(textOf(i));
  }
  spool.Finish();
  for (const std::size_t start : {std::size_t{0}, kCount / 2}) {
    SpoolReader reader(spool, start == 0 ? 0 : middle);
    std::uint64_t number = 0;
    std::string text;
    for (std::size_t i = start; i < kCount; ++i) {
      ASSERT_TRUE(reader.Get(number) && reader.GetText(text));
      EXPECT_EQ(number, i);
      EXPECT_EQ(text, textOf(i));
    }
    EXPECT_EQ(reader.Offset(), spool.Size());
    EXPECT_FALSE(reader.Get(number));
  }
}

}  // namespace
}  // namespace latchkey::cli
