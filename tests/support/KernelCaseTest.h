// Tests of the kernel lists: at the level in use each case equals plain code bit for bit and runs its kernel and no
// other, each kernel has a case, and each of its instruction sets is a level. For suites on AtEachLevel:
//
//   TEST_P(BlurKernels, EqualPlainCode) { expectEqualToPlainCode(blurKernels()); }
//   TEST(BlurKernels..., HaveACaseEach) { expectCaseOfEachKernel({imageKernels(), blurKernels()}); }
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/KernelCase.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/Random.h"

namespace vblur::test {

namespace kernel_case {

// Random bytes, with stretches of one byte that put components at the ends of their range.
inline std::vector<unsigned char> randomBytes(Random& random, std::size_t count) {
  std::vector<unsigned char> bytes;
  while (bytes.size() < count) {
    const bool plain = !random.oneIn(6);
    const int end = random.oneOf({0x00, 0xFF, 0x80, 0x7F});
    for (int i = random.within(1, 24); i > 0; --i)
      bytes.push_back(static_cast<unsigned char>(plain ? random.within(0, 255) : end));
  }
  bytes.resize(count);
  return bytes;
}

inline void compareOnce(const KernelCase& c, Random& random) {
  constexpr std::int32_t kLongest = 150;
  constexpr std::size_t kRoom = 8;
  const std::int32_t n = random.within(1, (random.oneIn(3) ? kLongest : 40) / std::min(c.unit, 40)) * c.unit;
  const auto elements = static_cast<std::size_t>(n) + 2 * kRoom;
  const auto place = [&](std::size_t bytes) { return static_cast<std::size_t>(random.within(0, kRoom)) * bytes; };
  const auto a = randomBytes(random, elements * c.aBytes);
  const auto b = randomBytes(random, elements * c.bBytes);
  auto expected = randomBytes(random, elements * c.outBytes);
  auto out = expected;
  const std::size_t aPlace = place(c.aBytes);
  const std::size_t bPlace = place(c.bBytes);
  const std::size_t outPlace = place(c.outBytes);
  {
    const CpuLevel twin("twin");
    c.run({a.data() + aPlace, b.data() + bPlace, expected.data() + outPlace, n});
  }
  ASSERT_TRUE(kernelsRan({})) << c.name;
  c.run({a.data() + aPlace, b.data() + bPlace, out.data() + outPlace, n});
  ASSERT_TRUE(kernelsRan({c.kernel})) << c.name;
  ASSERT_EQ(out, expected) << c.name << " of " << n << " at " << HvCpuLevel();
}

// A set that kernels are compiled for and HvCpu.cpp is not would never run at a level of its own.
inline void expectLevelOfEachTarget() {
  const std::string level = HvCpuLevel();
  const std::int64_t machine = hwy::SupportedTargets();
  // The call above has Highway forget the level.
  HvSetCpuLevel(level);
  const auto& levels = HvCpuLevels();
  for (const HvKernel* kernel = HvKernel::first(); kernel != nullptr; kernel = kernel->next()) {
    for (int bit = 0; bit < 63; ++bit) {
      const std::int64_t target = std::int64_t{1} << bit;
      if ((kernel->targets() & machine & target) == 0) continue;
      const std::string name = hwy::TargetName(target);
      EXPECT_TRUE(std::find(levels.begin(), levels.end(), name) != levels.end()) << kernel->name() << " for " << name;
    }
  }
}

}  // namespace kernel_case

inline void expectEqualToPlainCode(const std::vector<KernelCase>& cases, int rows = 100) {
  for (const KernelCase& c : cases)
    forRandomCases(rows, [&](Random& random) { kernel_case::compareOnce(c, random); });
}

inline void expectCaseOfEachKernel(const std::vector<std::vector<KernelCase>>& lists) {
  for (const HvKernel* kernel = HvKernel::first(); kernel != nullptr; kernel = kernel->next()) {
    const bool known = std::any_of(lists.begin(), lists.end(), [&](const std::vector<KernelCase>& cases) {
      return std::any_of(cases.begin(), cases.end(), [&](const KernelCase& c) { return c.kernel == kernel->name(); });
    });
    EXPECT_TRUE(known) << "no case of kernel " << kernel->name();
  }
  kernel_case::expectLevelOfEachTarget();
}

}  // namespace vblur::test
