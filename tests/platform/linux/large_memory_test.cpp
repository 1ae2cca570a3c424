#include "platform/large_memory.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace latchkey::test {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

// The flags of the mapping that contains the address, each between spaces.
std::string FlagsAt(const std::uint8_t* address) {
  std::ifstream mappings("/proc/self/smaps");
  bool isMapping = false;
  for (std::string line; std::getline(mappings, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    if (std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end) == 2) {  // NOLINT: /proc's own form
      const auto place = reinterpret_cast<std::uintptr_t>(address);
      isMapping = begin <= place && place < end;
    }
    if (isMapping && line.starts_with("VmFlags:")) return line + " ";
  }
  return {};
}

bool IsForHugePages(const std::uint8_t* address) {
  return FlagsAt(address).find(" hg ") != std::string::npos;
}

class LargeMemoryTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) GTEST_SKIP();
    memory = static_cast<std::uint8_t*>(
        ::mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(memory, MAP_FAILED);
  }
  void TearDown() override {
    if (memory != nullptr) ::munmap(memory, kSize);
  }

  static constexpr std::size_t kSize = 32 * kMiB;
  std::uint8_t* memory = nullptr;
};

TEST_F(LargeMemoryTest, OnlyWholePagesInsideTheMemoryAreMarked) {
  std::uint8_t* const begin = memory + 4 * kMiB + 5;
  platform::ExpectFilling(begin, 16 * kMiB);
  EXPECT_TRUE(IsForHugePages(begin + 8 * kMiB));
  EXPECT_FALSE(IsForHugePages(begin - 1));
  EXPECT_FALSE(IsForHugePages(begin + 16 * kMiB));
}

TEST_F(LargeMemoryTest, SmallMemoryIsNotMarked) {
  platform::ExpectFilling(memory, 3 * kMiB);
  EXPECT_FALSE(IsForHugePages(memory + 2 * kMiB));
}

}  // namespace
}  // namespace latchkey::test
