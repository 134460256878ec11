// Mix-back and masks on a 3840 x 2160 picture, beside plain copies of source and result on the same threads.
#include <benchmark/benchmark.h>

#include "composite/MixStage.h"
#include "image/HvThreads.h"
#include "image/SimpleCopySampler.h"

namespace vblur {
namespace {

constexpr std::int32_t kFrameWidth = 3840;
constexpr std::int32_t kFrameHeight = 2160;
constexpr StageWindow kWholeFrame{0, 0, kFrameWidth - 1, kFrameHeight - 1};

template <class Pixel>
void fillWithNoise(HvTexture<Pixel, Rf>& texture, std::uint32_t noise) {
  const auto component = [&] {
    noise = noise * 1664525u + 1013904223u;
    return storeNarrow<ComponentOf<Pixel>>(static_cast<std::int32_t>((noise >> 16) * Pixel::kOne / 65535));
  };
  for (std::int32_t y = 0; y < kFrameHeight; ++y) {
    for (std::int32_t x = 0; x < kFrameWidth; ++x) {
      Pixel& pixel = *texture.at(x, y);
      for (int c = 0; c < 4; ++c)
        pixel[c] = component();
    }
  }
}

template <class Pixel>
struct Frame {
  Frame() {
    fillWithNoise(source, 1);
    fillWithNoise(result, 2);
  }
  HvTexture<Pixel, Rf> source{kFrameWidth, kFrameHeight};
  HvTexture<Pixel, Rf> result{kFrameWidth, kFrameHeight};
};

template <class Pixel>
void CopySourceAndResult(benchmark::State& state) {
  HvSetThreadCount(static_cast<std::int32_t>(state.range(0)));
  Frame<Pixel> frame;
  HvTexture<Pixel, Rf> copyOfSource(kFrameWidth, kFrameHeight);
  HvTexture<Pixel, Rf> copyOfResult(kFrameWidth, kFrameHeight);
  SimpleCopySampler<Pixel, Rf> copy;
  for (auto _ : state) {
    copy.process(&frame.source, &copyOfSource);
    copy.process(&frame.result, &copyOfResult);
    benchmark::DoNotOptimize(*copyOfResult.at(kFrameWidth / 2, kFrameHeight / 2));
  }
}

template <class Pixel>
void MixBack(benchmark::State& state) {
  HvSetThreadCount(static_cast<std::int32_t>(state.range(0)));
  Frame<Pixel> frame;
  for (auto _ : state) {
    RunMixStage(frame.source, frame.result, static_cast<std::int32_t>(state.range(1)),
                static_cast<float>(state.range(2)), static_cast<float>(state.range(3)), 100.0f, kWholeFrame, nullptr);
    benchmark::DoNotOptimize(*frame.result.at(kFrameWidth / 2, kFrameHeight / 2));
  }
}

// Threads; the method's place in the mix-back list; the blend; the gain of the result.
void methods(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)->ArgNames({"threads", "method", "blend", "gain"})->UseRealTime();
  for (const int gain : {100, 80}) {
    for (const int blend : {50, 30, 70}) {
      for (int method = 1; method <= 18; ++method)
        benchmark->Args({1, method, blend, gain});
    }
  }
}

BENCHMARK(CopySourceAndResult<R8>)->Unit(benchmark::kMillisecond)->ArgName("threads")->Arg(1)->UseRealTime();
BENCHMARK(MixBack<R8>)->Apply(methods);
BENCHMARK(CopySourceAndResult<R16>)->Unit(benchmark::kMillisecond)->ArgName("threads")->Arg(1)->UseRealTime();
BENCHMARK(MixBack<R16>)->Apply(methods);

}  // namespace
}  // namespace vblur
