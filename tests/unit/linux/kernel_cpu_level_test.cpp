#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/linux/kernels/cpu_level.h"

namespace latchkey::platform {
namespace {

TEST(KernelCpuLevelTest, ANameForcesItsLevel) {
  EXPECT_EQ(CpuLevelNamed("portable", CpuLevel::Avx512), CpuLevel::Portable);
  EXPECT_EQ(CpuLevelNamed("avx2", CpuLevel::Avx512), CpuLevel::Avx2);
  EXPECT_EQ(CpuLevelNamed("avx512", CpuLevel::Avx512Vbmi), CpuLevel::Avx512);
  EXPECT_EQ(CpuLevelNamed("avx512vbmi", CpuLevel::Avx512Vbmi), CpuLevel::Avx512Vbmi);
}

TEST(KernelCpuLevelTest, NoLevelAboveTheMachinesIsForced) {
  EXPECT_EQ(CpuLevelNamed("avx512vbmi", CpuLevel::Avx512), CpuLevel::Avx512);
  EXPECT_EQ(CpuLevelNamed("avx512", CpuLevel::Avx2), CpuLevel::Avx2);
  EXPECT_EQ(CpuLevelNamed("avx2", CpuLevel::Portable), CpuLevel::Portable);
}

TEST(KernelCpuLevelTest, AnyOtherNameLeavesTheHighest) {
  for (const char* const name : {"", "AVX2", "avx", "avx1024"}) {
    EXPECT_EQ(CpuLevelNamed(name, CpuLevel::Avx2), CpuLevel::Avx2) << name;
  }
}

TEST(KernelCpuLevelTest, TheProcessFollowsTheVariable) {
  const char* const name = std::getenv("LATCHKEY_CPU");  // NOLINT(concurrency-mt-unsafe)
  EXPECT_EQ(ChosenCpuLevel(), CpuLevelNamed(name != nullptr ? name : "", HighestCpuLevel()));
  EXPECT_FALSE(ChosenCpuLevel() == CpuLevel::Portable && HasShaInstructions());
}

}  // namespace
}  // namespace latchkey::platform
