#include "cli/name_parts.h"

#include <gtest/gtest.h>

#include "cli/platform/file_state.h"
#include "cli/temporary_name.h"

namespace latchkey::cli {
namespace {

TEST(NamePartsTest, SplitsFolderAndLastPart) {
  EXPECT_EQ(FolderOf("a/b/c"), "a/b");
  EXPECT_EQ(FolderOf("c"), ".");
  EXPECT_EQ(FolderOf("/c"), "/");
  EXPECT_EQ(BeforeLastPart("a/b/c"), "a/b/");
  EXPECT_EQ(BeforeLastPart("c"), "");
  EXPECT_EQ(LastPartOf("a/b/c"), "c");
  EXPECT_EQ(LastPartOf("c"), "c");
  EXPECT_EQ(WithoutEnd("a//"), "a");
  EXPECT_EQ(WithoutEnd("//"), "/");
  EXPECT_EQ(Joined("a", "b"), "a/b");
  EXPECT_EQ(Joined("/", "b"), "/b");
}

TEST(NamePartsTest, AnEntryIsTheLastPartUnlessThatIsDotsOrTheRoot) {
  EXPECT_EQ(StartOfEntry("a/b"), 2U);
  EXPECT_EQ(StartOfEntry("b"), 0U);
  for (const std::string_view name : {".", "..", "a/..", "a/.", "/"}) {
    EXPECT_EQ(StartOfEntry(name), name.size()) << name;
  }
}

TEST(NamePartsTest, ARelativeNameHasNeitherRootNorDots) {
  EXPECT_EQ(StartOfRelative("a/b"), 0U);
  EXPECT_EQ(StartOfRelative("/a/b"), 1U);
  EXPECT_EQ(StartOfRelative("././/a"), 5U);
  EXPECT_EQ(StartOfRelative("/./a"), 3U);
  EXPECT_EQ(StartOfRelative(".a"), 0U);
  EXPECT_EQ(StartOfRelative("../a"), 0U);
}

TEST(NamePartsTest, FindsTheParentFolderInAName) {
  for (const std::string_view name : {"..", "../a", "a/../b", "a/.."}) {
    EXPECT_TRUE(HasParent(name)) << name;
  }
  for (const std::string_view name : {"", "a", "...", "a/..b", "a../b"}) {
    EXPECT_FALSE(HasParent(name)) << name;
  }
}

TEST(NamePartsTest, BackslashesAndDrivesSeparateOnlyOnWindows) {
  const bool isWindows = IsSeparator('\\');
  EXPECT_EQ(LastPartOf("a\\b"), isWindows ? "b" : "a\\b");
  EXPECT_EQ(LastPartOf("c:b"), isWindows ? "b" : "c:b");
  EXPECT_EQ(BeforeLastPart("c:b"), isWindows ? "c:" : "");
  EXPECT_EQ(StartOfRelative("c:\\b"), isWindows ? 3U : 0U);
  EXPECT_EQ(HasParent("a\\..\\b"), isWindows);
}

TEST(TemporaryNameTest, RecognizesOnlyItsOwnNames) {
  const std::string name = NewTemporaryName();
  EXPECT_TRUE(IsTemporaryName(name)) << name;
  EXPECT_NE(name, NewTemporaryName());
  EXPECT_FALSE(IsTemporaryName(name + "a"));
  EXPECT_FALSE(IsTemporaryName(std::string_view(name).substr(1)));
  EXPECT_FALSE(IsTemporaryName(""));
  EXPECT_FALSE(IsTemporaryName(".latchkey-abcdef"));
  for (std::size_t i = 0; i < name.size(); ++i) {
    std::string other = name;
    other[i] = other[i] == 'q' ? 'r' : 'q';
    EXPECT_FALSE(IsTemporaryName(other)) << other;
  }
}

}  // namespace
}  // namespace latchkey::cli
