// The mix-back stage by each of its methods, at a blend of 50, which has a form of its own, and at another blend.
#include <memory>
#include <vector>

#include "bench/Pictures.h"
#include "blur/FuzzSampler.h"
#include "composite/MixStage.h"
#include "tests/composite/MergeKernels.h"

namespace vblur::bench {

namespace {

constexpr float kNoBlend = 50.0f;
constexpr float kSomeBlend = 35.0f;

// The source and its blur.
template <class Pixel>
const typename Pictures<Pixel>::Texture& blurred(Pictures<Pixel>& all) {
  static const auto picture = [&] {
    auto made = std::make_unique<typename Pictures<Pixel>::Texture>(all.size.width, all.size.height);
    Blur<Pixel> sampler;
    sampler.sizeX = sampler.sizeY = 10.0f;
    sampler.process(&all.source, made.get());
    return made;
  }();
  return *picture;
}

template <class Pixel>
void mixBack(benchmark::State& state, std::int32_t method, float blend, const std::string& name) {
  Pictures<Pixel>& all = pictures<Pixel>(Size());
  const auto& effect = blurred(all);
  HvTexture<Pixel, Rf> source;
  HvTexture<Pixel, Rf> result;
  source.share(all.source);
  result.share(all.result);
  const std::size_t bytes = static_cast<std::size_t>(result.stride) * static_cast<std::size_t>(all.size.height);
  const auto restore = [&] { std::memcpy(result.data, effect.data, bytes); };
  const auto mix = [&] {
    RunMixStage(source, result, method, blend, 100.0f, 100.0f, {0, 0, all.size.width - 1, all.size.height - 1},
                nullptr);
  };
  useThreads(1);
  const std::uint64_t expected = hashByTwin(name, result, [&] { restore(), mix(); });
  for (auto _ : state) {
    // The stage works in place: its input is restored each time.
    state.PauseTiming();
    restore();
    state.ResumeTiming();
    mix();
  }
  if (hashOf(result) != expected) state.SkipWithError("the picture differs from the twin's");
}

template <class Pixel>
void addCases(const Plan& plan) {
  const std::int32_t depth = 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>));
  // The mix-back list: 1 is Mix, the merges follow.
  std::vector<const char*> names{"Mix"};
  names.insert(names.end(), test::kMergeNames.begin(), test::kMergeNames.end());
  std::int32_t method = 0;
  for (const char* methodName : names) {
    ++method;
    for (const float blend : {kNoBlend, kSomeBlend}) {
      if (plan.quick && blend != kNoBlend) continue;
      CaseName name("mix");
      name.with("depth", depth).with("method", methodName).with("form", blend == kNoBlend ? "plain" : "blended");
      name.with("threads", 1).with(Size());
      addCase(name, [=](benchmark::State& state) { mixBack<Pixel>(state, method, blend, name.text()); });
    }
  }
}

}  // namespace

void addMixBackCases(const Plan& plan) {
  addCases<R8>(plan);
  addCases<R16>(plan);
  addCases<Rf>(plan);
}

}  // namespace vblur::bench
