// The levels that a test of the kernels runs under, each as a parameter.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/linux/kernels/cpu_level.h"

namespace latchkey::test {

inline std::vector<platform::CpuLevel> LevelsOfThisMachine() {
  using platform::CpuLevel;
  std::vector<CpuLevel> levels;
  for (const CpuLevel level :
       {CpuLevel::Portable, CpuLevel::Avx2, CpuLevel::Avx512, CpuLevel::Avx512Vbmi}) {
    if (level <= platform::HighestCpuLevel()) levels.push_back(level);
  }
  return levels;
}

inline std::string NameOfLevel(const ::testing::TestParamInfo<platform::CpuLevel>& level) {
  return platform::NameOf(level.param);
}

}  // namespace latchkey::test
