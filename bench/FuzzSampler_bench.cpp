// The whole filter on a 3840 x 2160 picture, beside plain copies of the same bytes on the same threads:
// the floor of anything that reads the source, writes an intermediate, reads it and writes a result.
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include "blur/FuzzSampler.h"
#include "image/HvThreads.h"
#include "image/SimpleCopySampler.h"

namespace vblur {
namespace {

constexpr std::int32_t kWidth = 3840;
constexpr std::int32_t kHeight = 2160;
constexpr double kMegapixels = kWidth * kHeight / 1e6;

template <class Pixel>
void fill(HvTexture<Pixel, Ri>& texture) {
  std::uint32_t noise = 1;
  for (std::int32_t y = 0; y < kHeight; ++y) {
    for (std::int32_t x = 0; x < kWidth; ++x) {
      noise = noise * 1664525u + 1013904223u;
      Pixel& pixel = *texture.at(x, y);
      pixel.red = storeNarrow<ComponentOf<Pixel>>(static_cast<std::int32_t>(noise >> 24));
      pixel.green = storeNarrow<ComponentOf<Pixel>>(x & 255);
      pixel.blue = storeNarrow<ComponentOf<Pixel>>(y & 255);
      pixel.alpha = Pixel::kOne;
    }
  }
}

void report(benchmark::State& state) {
  state.counters["per_MP"] =
      benchmark::Counter(kMegapixels, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <class Pixel>
void FourCopies(benchmark::State& state) {
  HvSetThreadCount(static_cast<std::int32_t>(state.range(0)));
  HvTexture<Pixel, Ri> source(kWidth, kHeight);
  HvTexture<Pixel, Ri> between(kWidth, kHeight);
  HvTexture<Pixel, Ri> result(kWidth, kHeight);
  fill(source);
  SimpleCopySampler<Pixel, Ri> copy;
  for (auto _ : state) {
    copy.process(&source, &between);
    copy.process(&between, &result);
    benchmark::DoNotOptimize(*result.at(kWidth / 2, kHeight / 2));
  }
  report(state);
}

template <class Pixel>
void Fuzz(benchmark::State& state) {
  HvSetThreadCount(static_cast<std::int32_t>(state.range(0)));
  HvTexture<Pixel, Ri> source(kWidth, kHeight);
  HvTexture<Pixel, Ri> result(kWidth, kHeight);
  fill(source);
  source.setEdgeMethods(kEdgeReflect, kEdgeReflect);
  FuzzSampler<Pixel, Ri, Pixel::kMax> sampler;
  sampler.sizeX = sampler.sizeY = static_cast<float>(state.range(1)) / 100.0f;
  sampler.mode = static_cast<std::int32_t>(state.range(2));
  for (auto _ : state) {
    sampler.process(&source, &result);
    benchmark::DoNotOptimize(*result.at(kWidth / 2, kHeight / 2));
  }
  report(state);
}

// Threads; the radius of one box in hundredths of a pixel; the mode.
void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)->ArgNames({"threads", "r100", "mode"})->UseRealTime();
  for (const int threads : {1, 2}) {
    for (const int radius : {50, 333, 1000, 3330, 10000, 33300})
      benchmark->Args({threads, radius, kFuzzRGBA});
  }
  for (const int mode : {kFuzzRGB, kFuzzRed, kFuzzGrey, kFuzzLuminance, kFuzzChroma})
    benchmark->Args({1, 1000, mode});
}

BENCHMARK(FourCopies<R8>)->Unit(benchmark::kMillisecond)->ArgName("threads")->Arg(1)->Arg(2)->UseRealTime();
BENCHMARK(FourCopies<R16>)->Unit(benchmark::kMillisecond)->ArgName("threads")->Arg(1)->Arg(2)->UseRealTime();
BENCHMARK(Fuzz<R8>)->Apply(sizes);
BENCHMARK(Fuzz<R16>)->Apply(sizes);

}  // namespace
}  // namespace vblur
