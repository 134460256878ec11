// Each kernel on rows that stay in the first-level cache, at each level: its arithmetic without memory traffic.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "bench/Cases.h"
#include "image/HvCpu.h"
#include "tests/blur/BlurKernels.h"
#include "tests/composite/CompositeKernels.h"
#include "tests/image/ImageKernels.h"

namespace vblur::bench {

namespace {

constexpr std::int32_t kElements = 1920;

std::vector<unsigned char> numbered(std::size_t bytes) {
  std::vector<unsigned char> all(bytes);
  for (std::size_t i = 0; i < bytes; ++i)
    all[i] = static_cast<unsigned char>((i * 0x9E3779B97F4A7C15u) >> 56);
  return all;
}

// The output of one run; `out` starts with the same bytes each time.
std::vector<unsigned char> resultOf(const test::KernelCase& kernel, const test::KernelRow& rows) {
  std::vector<unsigned char> out = numbered(static_cast<std::size_t>(rows.n) * kernel.outBytes);
  kernel.run({rows.a, rows.b, out.data(), rows.n});
  return out;
}

void runKernel(benchmark::State& state, const test::KernelCase& kernel, const std::string& level) {
  const std::int32_t n = kElements / kernel.unit * kernel.unit;
  const auto a = numbered(static_cast<std::size_t>(n) * kernel.aBytes);
  const auto b = numbered(static_cast<std::size_t>(n) * kernel.bBytes);
  const test::KernelRow rows{a.data(), b.data(), nullptr, n};
  HvSetCpuLevel("twin");
  const auto expected = resultOf(kernel, rows);
  HvSetCpuLevel(level);
  if (resultOf(kernel, rows) != expected) state.SkipWithError("the row differs from the twin's");
  auto out = numbered(static_cast<std::size_t>(n) * kernel.outBytes);
  for (auto _ : state)
    kernel.run({a.data(), b.data(), out.data(), n});
  state.SetItemsProcessed(state.iterations() * n);
  HvSetCpuLevel("native");
}

}  // namespace

// A quick run has one case of each kernel.
void addKernelCases(const Plan& plan) {
  constexpr double kSeconds = 0.05;
  std::set<std::string> seen;
  for (const auto& list : {test::imageKernels(), test::blurKernels(), test::compositeKernels()}) {
    for (const test::KernelCase& kernel : list) {
      if (!seen.insert(kernel.kernel).second && plan.quick) continue;
      for (const std::string& level : HvCpuLevels()) {
        if (plan.quick && level != "native") continue;
        addCase(CaseName("kernel").with("name", kernel.name).with("threads", 1).with("level", level),
                [=](benchmark::State& state) { runKernel(state, kernel, level); })
            ->Unit(benchmark::kMicrosecond)
            ->MinTime(kSeconds);
      }
    }
  }
}

}  // namespace vblur::bench
