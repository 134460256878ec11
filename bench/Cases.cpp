#include "bench/Cases.h"

#include <cstdio>
#include <utility>

#include <unistd.h>

#include "image/HvThreads.h"

namespace vblur::bench {

std::vector<float> Plan::radii() const {
  if (quick) return {0.5f, 3.33f, 10.0f, 100.0f, 333.0f};
  return {std::begin(kRadii), std::end(kRadii)};
}

std::vector<float> Plan::peerRadii() const {
  if (quick) return {0.5f, 10.0f, 100.0f, 333.0f};
  return {std::begin(kFewRadii), std::end(kFewRadii)};
}

std::vector<Size> Plan::sizes() const {
  // Three pictures of 16 bits, three of 8 and what lies between the passes.
  constexpr std::int64_t kLargeNeeds = std::int64_t{4} << 30;
  if (quick) return {Size()};
  std::vector<Size> all{{512, 512}, {1920, 1080}, Size()};
  if (std::int64_t{sysconf(_SC_PHYS_PAGES)} * sysconf(_SC_PAGESIZE) >= kLargeNeeds) all.push_back({8192, 4320});
  return all;
}

CaseName& CaseName::with(std::string_view key, std::string_view value) {
  text_.append("/").append(key).append("=").append(value);
  return *this;
}

CaseName& CaseName::with(std::string_view key, double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", value);
  return with(key, std::string_view(text));
}

CaseName& CaseName::with(std::string_view key, std::int32_t value) {
  return with(key, std::to_string(value));
}

benchmark::internal::Benchmark* addCase(const CaseName& name, std::function<void(benchmark::State&)> function) {
  return benchmark::RegisterBenchmark(name.text().c_str(), std::move(function))
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
}

void useThreads(std::int32_t count) {
  if (HvThreadCount() != count) HvSetThreadCount(count);
}

}  // namespace vblur::bench
