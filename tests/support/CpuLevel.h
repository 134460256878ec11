// Sets the CPU level of the process for a scope; scopes nest.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "image/HvCpu.h"
#include "tests/support/Random.h"

namespace vblur::test {

class CpuLevel {
 public:
  explicit CpuLevel(const std::string& level) { EXPECT_TRUE(HvSetCpuLevel(level)) << level; }
  ~CpuLevel() { HvSetCpuLevel(before_); }
  CpuLevel(const CpuLevel&) = delete;
  CpuLevel& operator=(const CpuLevel&) = delete;

 private:
  const std::string before_ = HvCpuLevel();
};

// Any level of this machine.
inline const std::string& randomCpuLevel(Random& random) {
  const auto& levels = HvCpuLevels();
  return levels[static_cast<std::size_t>(random.within(0, static_cast<int>(levels.size()) - 1))];
}

}  // namespace vblur::test
