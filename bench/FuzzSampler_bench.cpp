// The whole filter: radii, channel choices, instruction sets and picture sizes.
#include "bench/Pictures.h"
#include "image/HvCpu.h"

namespace vblur::bench {

namespace {

struct BlurCase {
  std::int32_t threads = 1;
  float radius = 10.0f;
  std::int32_t method = kFuzzBlur;
  std::int32_t mode = kFuzzRGBA;
  std::string level = "native";
  Size size = {};
};

constexpr const char* kModeNames[] = {"RGBA", "Alpha",     "RGB", "Grey", "Red",   "Green",
                                      "Blue", "Luminance", "U",   "V",    "Chroma"};

template <class Pixel>
void blur(benchmark::State& state, const BlurCase& blurCase, const std::string& picture) {
  Pictures<Pixel>& all = pictures<Pixel>(blurCase.size);
  Blur<Pixel> sampler;
  sampler.sizeX = sampler.sizeY = blurCase.radius;
  sampler.method = blurCase.method;
  sampler.mode = blurCase.mode;
  const auto render = [&] { sampler.process(&all.source, &all.result); };
  const std::uint64_t expected = hashByTwin(picture, all.result, render);
  useThreads(blurCase.threads);
  HvSetCpuLevel(blurCase.level);
  // What the filter takes of memory is touched then, as the pictures are: other cases have given theirs back.
  render();
  clear(all.result);
  for (auto _ : state)
    render();
  HvSetCpuLevel("native");
  if (hashOf(all.result) != expected) state.SkipWithError("the picture differs from the twin's");
}

template <class Pixel>
void add(const BlurCase& blurCase) {
  CaseName picture("blur");
  picture.with("depth", 8 * static_cast<std::int32_t>(sizeof(ComponentOf<Pixel>)))
      .with("radius", static_cast<double>(blurCase.radius))
      .with("method", blurCase.method == kFuzzSharpen ? "Sharpen" : "Blur")
      .with("mode", kModeNames[blurCase.mode])
      .with(blurCase.size);
  CaseName name = picture;
  name.with("threads", blurCase.threads).with("level", blurCase.level);
  addCase(name, [=](benchmark::State& state) { blur<Pixel>(state, blurCase, picture.text()); });
}

template <class Pixel>
void addLevels(const Plan& plan) {
  for (const std::string& level : HvCpuLevels()) {
    // The best level is measured by the cases above.
    if (level == "native" || level == HvCpuLevel()) continue;
    const bool everywhere = level == "AVX2";
    if (plan.quick && !everywhere) continue;
    const auto radii = everywhere ? plan.radii() : plan.peerRadii();
    for (const float radius : radii)
      add<Pixel>({.radius = radius, .level = level});
  }
}

template <class Pixel>
void addCases(const Plan& plan) {
  for (const std::int32_t threads : {1, 2}) {
    for (const float radius : plan.radii())
      add<Pixel>({.threads = threads, .radius = radius});
    for (const Size& size : plan.sizes()) {
      if (size != Size()) add<Pixel>({.threads = threads, .size = size});
    }
  }
  for (std::int32_t mode = kFuzzAlpha; mode <= kFuzzChroma; ++mode) {
    if (!plan.quick || mode == kFuzzRed || mode == kFuzzGrey || mode == kFuzzLuminance) add<Pixel>({.mode = mode});
  }
  add<Pixel>({.method = kFuzzSharpen});
  addLevels<Pixel>(plan);
}

}  // namespace

void addBlurCases(const Plan& plan) {
  addCases<R8>(plan);
  addCases<R16>(plan);
  addCases<Rf>(plan);
}

}  // namespace vblur::bench
