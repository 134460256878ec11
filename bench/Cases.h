// The benchmark cases and their machine-readable names: key=value/key=value/...
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

namespace vblur::bench {

struct Size {
  std::int32_t width = 3840;
  std::int32_t height = 2160;

  double megapixels() const { return width * 1e-6 * height; }
  friend auto operator<=>(const Size&, const Size&) = default;
};

// The radius of one box, in pixels; a whole filter is three boxes along each axis.
inline constexpr float kRadii[] = {0.5f, 3.0f, 3.33f, 10.0f, 33.0f, 33.3f, 62.0f, 100.0f, 127.0f, 333.0f};
// The radii of peers and instruction sets.
inline constexpr float kFewRadii[] = {0.5f, 3.33f, 10.0f, 33.3f, 100.0f, 333.0f};

struct Plan {
  bool quick = false;

  // A quick run measures a subset.
  std::vector<float> radii() const;
  std::vector<float> peerRadii() const;
  // The reference size, smaller ones, and a large one if the machine has the memory.
  std::vector<Size> sizes() const;
};

// Builds a name of key=value parts, separated by slashes.
class CaseName {
 public:
  explicit CaseName(std::string_view what) : text_("what=" + std::string(what)) {}
  CaseName& with(std::string_view key, std::string_view value);
  CaseName& with(std::string_view key, double value);
  CaseName& with(std::string_view key, std::int32_t value);
  CaseName& with(const Size& size) { return with("width", size.width).with("height", size.height); }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

// Measures wall-clock time, so that the work of other threads counts.
benchmark::internal::Benchmark* addCase(const CaseName& name, std::function<void(benchmark::State&)> function);

// Sets the size of the pool; threads that it has already are kept.
void useThreads(std::int32_t count);

void addCopyCases(const Plan& plan);
void addBlurCases(const Plan& plan);
void addMixBackCases(const Plan& plan);
void addThreadCases();
void addKernelCases(const Plan& plan);
// Peers also report their version in the context of the run.
void addOpenCvCases(const Plan& plan);
void addLibavfilterCases(const Plan& plan);

}  // namespace vblur::bench
