#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "base/kernels/cpu_level.h"

namespace latchkey {
namespace {

TEST(KernelCpuLevelTest, ANameChoosesItsLevel) {
  EXPECT_EQ(CpuLevelNamed("portable", CpuLevel::Avx512), CpuLevel::Portable);
  EXPECT_EQ(CpuLevelNamed("avx2", CpuLevel::Avx512), CpuLevel::Avx2);
  EXPECT_EQ(CpuLevelNamed("avx512", CpuLevel::Avx512), CpuLevel::Avx512);
}

TEST(KernelCpuLevelTest, TheNameOfALevelChoosesIt) {
  for (const CpuLevel level : {CpuLevel::Portable, CpuLevel::Avx2, CpuLevel::Avx512}) {
    EXPECT_EQ(CpuLevelNamed(NameOf(level), CpuLevel::Avx512), level);
  }
  for (const CpuLevel level : {CpuLevel::Portable, CpuLevel::Neon}) {
    EXPECT_EQ(CpuLevelNamed(NameOf(level), CpuLevel::Neon), level);
  }
}

TEST(KernelCpuLevelTest, NeverChoosesALevelAboveTheMachines) {
  EXPECT_EQ(CpuLevelNamed("avx512", CpuLevel::Avx2), CpuLevel::Avx2);
  EXPECT_EQ(CpuLevelNamed("avx2", CpuLevel::Portable), CpuLevel::Portable);
}

TEST(KernelCpuLevelTest, ALevelOfAnotherKindOfCpuChoosesTheHighestLevel) {
  EXPECT_EQ(CpuLevelNamed("avx2", CpuLevel::Neon), CpuLevel::Neon);
  EXPECT_EQ(CpuLevelNamed("avx512", CpuLevel::Neon), CpuLevel::Neon);
  EXPECT_EQ(CpuLevelNamed("neon", CpuLevel::Avx512), CpuLevel::Avx512);
  EXPECT_EQ(CpuLevelNamed("neon", CpuLevel::Portable), CpuLevel::Portable);
}

TEST(KernelCpuLevelTest, AnyOtherNameChoosesTheHighestLevel) {
  for (const char* const name : {"", "AVX2", "avx", "avx1024"}) {
    EXPECT_EQ(CpuLevelNamed(name, CpuLevel::Avx2), CpuLevel::Avx2) << name;
  }
}

TEST(KernelCpuLevelTest, TheProcessFollowsTheVariable) {
  const char* const name = std::getenv("LATCHKEY_CPU");  // NOLINT(concurrency-mt-unsafe)
  if (name != nullptr && *name != '\0') {
    EXPECT_STREQ(NameOf(ChosenCpuLevel()), name)
        << "the tests would not run the kernels of that level";
  } else {
    EXPECT_EQ(ChosenCpuLevel(), HighestCpuLevel());
  }
  EXPECT_FALSE(ChosenCpuLevel() == CpuLevel::Portable && HasShaInstructions());
}

}  // namespace
}  // namespace latchkey
