// Records which kernels have run and for which instruction set; every test of vector code asserts it.
//
//   class MixRows : public AtEachLevel {};           // a suite at every level but the twin
//   INSTANTIATE_TEST_SUITE_P(Levels, MixRows, testing::ValuesIn(vectorLevels()), levelName);
//
//   TEST_P(MixRows, EqualTheTwin) {
//     ...                                            // at the end some kernel must have run, each for this level
//     EXPECT_TRUE(kernelsRan({"mix 8", "mix 16"}));  // stricter: these and no others, since the last call
//   }
//
// A test that draws a level for each case collects them in KernelRunsOfCases.
//
// A test of plain code ends with EXPECT_TRUE(kernelsRan({})); tests without the fixture call forgetKernelRuns() first.
// Names are those of HvEnterKernel in X_simd.cpp. At a level that a kernel is not compiled for it must run for the best
// instruction set below.
#pragma once

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include "image/HvCpu.h"
#include "image/HvKernel.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/Random.h"

namespace vblur::test {

// The instruction set that a kernel must run for at the level in use: the best one up to it that the kernel is compiled
// for. 0 at the twin.
inline std::int64_t wantedTarget(const HvKernel& kernel) {
  if (!HvUsesVectors()) return 0;
  const auto& levels = HvCpuLevels();
  const std::string level = HvCpuLevel();
  // The lower the bit, the better.
  bool reached = false;
  for (int bit = 0; bit < 63; ++bit) {
    const std::int64_t target = std::int64_t{1} << bit;
    const std::string name = hwy::TargetName(target);
    reached = reached || name == level;
    const bool usable =
        (kernel.targets() & target) != 0 && std::find(levels.begin(), levels.end(), name) != levels.end();
    if (reached && usable) return target;
  }
  return 0;
}

struct KernelRun {
  std::string name;
  std::int64_t targets = 0;
  std::int64_t wanted = 0;
};

// Kernels that have run since the last call.
inline std::vector<KernelRun> takeKernelRuns() {
  std::vector<KernelRun> runs;
  for (HvKernel* kernel = HvKernel::first(); kernel != nullptr; kernel = kernel->next()) {
    const std::int64_t targets = kernel->takeEntered();
    if (targets != 0) runs.push_back({kernel->name(), targets, wantedTarget(*kernel)});
  }
  return runs;
}

inline void forgetKernelRuns() {
  takeKernelRuns();
}

inline ::testing::AssertionResult ranAtThisLevel(const std::vector<KernelRun>& runs) {
  for (const KernelRun& run : runs) {
    if (run.targets == run.wanted) continue;
    return ::testing::AssertionFailure() << run.name << " ran for targets " << run.targets << ", not " << run.wanted
                                         << ", at level " << HvCpuLevel();
  }
  return ::testing::AssertionSuccess();
}

inline bool askedForKernelRuns = false;

// These kernels and no others have run since the last call, each for the level in use.
inline ::testing::AssertionResult kernelsRan(std::vector<std::string> names) {
  askedForKernelRuns = true;
  const std::vector<KernelRun> runs = takeKernelRuns();
  std::vector<std::string> ran;
  for (const KernelRun& run : runs)
    ran.push_back(run.name);
  std::sort(names.begin(), names.end());
  std::sort(ran.begin(), ran.end());
  if (ran != names) {
    return ::testing::AssertionFailure() << ::testing::PrintToString(ran) << " ran, not "
                                         << ::testing::PrintToString(names) << ", at level " << HvCpuLevel();
  }
  return ranAtThisLevel(runs);
}

// At a level of vector code these kernels, and maybe others, have run since the last call, each for that level; at the
// twin none has.
inline ::testing::AssertionResult kernelsRanAmongOthers(const std::vector<std::string>& names) {
  askedForKernelRuns = true;
  const std::vector<KernelRun> runs = takeKernelRuns();
  for (const std::string& name : names) {
    const bool ran = std::any_of(runs.begin(), runs.end(), [&](const KernelRun& run) { return run.name == name; });
    if (!ran && HvUsesVectors()) return ::testing::AssertionFailure() << name << " has not run at " << HvCpuLevel();
  }
  return ranAtThisLevel(runs);
}

// For tests whose cases draw a level each: note() after each case, while its level is in use, and at the end
// EXPECT_TRUE(runs.had({"mixRow 8"})).
class KernelRunsOfCases {
 public:
  KernelRunsOfCases() {
    askedForKernelRuns = true;
    forgetKernelRuns();
  }
  void note() {
    const std::vector<KernelRun> runs = takeKernelRuns();
    EXPECT_TRUE(ranAtThisLevel(runs));
    for (const KernelRun& run : runs)
      names_.insert(run.name);
  }
  // These kernels, and maybe others, have run in some case. A share of the cases asks for none.
  ::testing::AssertionResult had(const std::vector<std::string>& names) const {
    for (const std::string& name : names) {
      if (names_.count(name) == 0 && !runsFewCases()) {
        return ::testing::AssertionFailure() << name << " has not run, only " << ::testing::PrintToString(names_);
      }
    }
    return ::testing::AssertionSuccess();
  }

 private:
  std::set<std::string> names_;
};

// Every level but the twin.
inline std::vector<std::string> vectorLevels() {
  return {HvCpuLevels().begin() + 1, HvCpuLevels().end()};
}

// Prints the level in the name of a test.
inline const auto levelName = [](const ::testing::TestParamInfo<std::string>& level) { return level.param; };

// A test at a level. Kernels that ran since the test's last check must have run for that level; a test without a check
// must have run some.
class AtEachLevel : public ::testing::TestWithParam<std::string> {
 protected:
  AtEachLevel() {
    forgetKernelRuns();
    askedForKernelRuns = false;
  }
  void TearDown() override {
    const std::vector<KernelRun> runs = takeKernelRuns();
    if (HasFailure() || IsSkipped()) return;
    EXPECT_TRUE(askedForKernelRuns || !runs.empty()) << "no vector code has run";
    EXPECT_TRUE(ranAtThisLevel(runs));
  }

 private:
  const CpuLevel level_{GetParam()};
};

}  // namespace vblur::test
