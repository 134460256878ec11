// The code that all pixel loops run, for the length of a scope. It is the whole process's.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "image/HvCpu.h"
#include "tests/support/Random.h"

namespace vblur::test {

class CpuLevel {
 public:
  explicit CpuLevel(const std::string& level) { EXPECT_TRUE(HvSetCpuLevel(level)) << level; }
  ~CpuLevel() { HvSetCpuLevel("native"); }
  CpuLevel(const CpuLevel&) = delete;
  CpuLevel& operator=(const CpuLevel&) = delete;
};

// Any level of this machine.
inline const std::string& randomCpuLevel(Random& random) {
  const auto& levels = HvCpuLevels();
  return levels[static_cast<std::size_t>(random.within(0, static_cast<int>(levels.size()) - 1))];
}

}  // namespace vblur::test
