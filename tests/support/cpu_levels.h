// The levels that a test of the kernels runs under, each as a parameter.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/kernels/cpu_level.h"

namespace latchkey::test {

inline std::vector<CpuLevel> LevelsOfThisMachine() {
  std::vector<CpuLevel> levels;
  for (const CpuLevel level :
       {CpuLevel::Portable, CpuLevel::Avx2, CpuLevel::Avx512, CpuLevel::Neon}) {
    if (CpuLevelNamed(NameOf(level), HighestCpuLevel()) == level) levels.push_back(level);
  }
  return levels;
}

inline std::string NameOfLevel(const ::testing::TestParamInfo<CpuLevel>& level) {
  return NameOf(level.param);
}

}  // namespace latchkey::test
