// The library's calls: the pixels of the filter and of the independent model, whatever the memory, the threads and the
// CPU level.
#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "blur/FuzzChannels.h"
#include "blur/FuzzSampler.h"
#include "tests/model/fuzz.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ModelBridge.h"
#include "tests/vblur/RandomCalls.h"

namespace vblur::test {
namespace {

Result run(FuzzMethod method, const ConstPicture& source, const Picture& result, const Settings& settings) {
  return method == kFuzzSharpen ? sharpen(source, result, settings) : blur(source, result, settings);
}

float radiusOf(double size, int width, int height) {
  return std::min(static_cast<float>(size) / 3.0f, static_cast<float>(std::max(width, height)) * 3.0f);
}

template <class Pixel>
struct Scene {
  Scene(Random& random, int most)
      : width(random.within(1, most)),
        height(random.within(1, most)),
        source(width, height, randomLayout(random)),
        result(width, height, randomLayout(random)),
        settings(randomSettings<Pixel>(random, width, height)),
        method(static_cast<FuzzMethod>(random.within(kFuzzBlur, kFuzzSharpen))) {
    source.fillRandom(random, random.oneIn(2) ? storageRange<Pixel>() : ComponentRange<Pixel>{0, Pixel::kOne});
    result.fillRandom(random);
  }

  void wrapSource(HvTexture<Pixel, AccumOf<Pixel>>& texture) {
    source.wrapIn(texture);
    texture.setEdgeMethods(static_cast<std::int32_t>(settings.edgeX), static_cast<std::int32_t>(settings.edgeY));
    Pixel outside{};
    for (int c = 0; c < 4; ++c) {
      const auto at = static_cast<std::size_t>(c);
      if constexpr (Pixel::kIntegral) {
        outside[c] = static_cast<typename Pixel::Component>(settings.outside[at]);
      } else {
        outside[c] = settings.outsideF32[at];
      }
    }
    texture.setOutsideColour(outside);
  }

  // The result of the filter itself on a copy.
  Canvas<Pixel> filtered() {
    Canvas<Pixel> expected = result;
    HvTexture<Pixel, AccumOf<Pixel>> from;
    HvTexture<Pixel, AccumOf<Pixel>> to;
    wrapSource(from);
    expected.wrapIn(to);
    FuzzSampler<Pixel, AccumOf<Pixel>, Pixel::kMax> sampler;
    sampler.method = method;
    sampler.mode = fuzzModeOf(static_cast<std::int32_t>(settings.channels));
    sampler.sizeX = radiusOf(settings.sizeX, width, height);
    sampler.sizeY = radiusOf(settings.sizeY, width, height);
    if (const auto& region = settings.region) {
      sampler.setWindow(region->x, region->y, region->x + region->width - 1, region->y + region->height - 1);
    }
    sampler.process(&from, &to);
    return expected;
  }

  model::Picture modelled() {
    HvTexture<Pixel, AccumOf<Pixel>> from;
    HvTexture<Pixel, AccumOf<Pixel>> to;
    wrapSource(from);
    result.wrapIn(to);
    static constexpr model::FuzzMode kModes[] = {model::kFuzzRgb,   model::kFuzzAll,       model::kFuzzGrey,
                                                 model::kFuzzRed,   model::kFuzzGreen,     model::kFuzzBlue,
                                                 model::kFuzzAlpha, model::kFuzzLuminance, model::kFuzzChroma,
                                                 model::kFuzzU,     model::kFuzzV};
    model::FuzzJob job;
    job.depth = modelDepth<Pixel>();
    job.source = modelPicture(from);
    job.target = modelPicture(to);
    job.mode = kModes[static_cast<std::size_t>(settings.channels)];
    job.method = method;
    job.sizeX = radiusOf(settings.sizeX, width, height);
    job.sizeY = radiusOf(settings.sizeY, width, height);
    if (const auto& region = settings.region) {
      job.window = {{region->x, region->y, region->x + region->width - 1, region->y + region->height - 1}};
    }
    return model::Fuzz(job);
  }

  int width;
  int height;
  Canvas<Pixel> source;
  Canvas<Pixel> result;
  Settings settings;
  FuzzMethod method;
};

// Those of the filter and of its channels; a grey picture is extracted and spread.
template <class Pixel>
std::vector<std::string> kernelsOf(bool withGrey) {
  if (!Pixel::kIntegral) return {"boxSweep float"};
  std::vector<std::string> names{"transposePixels"};
  for (const char* name : {"boxSweep", "yuvRow", "rgbRow", "extractRow", "spreadRow"})
    names.push_back(std::string(name) + (sizeof(Pixel) == 4 ? " 8" : " 16"));
  if (!withGrey) names.resize(names.size() - 2);
  return names;
}

template <class Pixel>
class Calls : public ::testing::Test {};

using Depths = ::testing::Types<R8, R16, Rf>;
TYPED_TEST_SUITE(Calls, Depths);

TYPED_TEST(Calls, MakeWhatTheFilterMakes) {
  KernelRunsOfCases runs;
  forRandomCases(400, [&](Random& random) {
    Scene<TypeParam> scene(random, 90);
    const Canvas<TypeParam> expected = [&] {
      const CpuLevel twin("twin");
      return scene.filtered();
    }();
    const CpuLevel level(randomCpuLevel(random));
    ASSERT_TRUE(setThreads(random.within(0, 5)));
    const Canvas<TypeParam> before = scene.source;
    const Result done = run(scene.method, asSource(pictureOf(scene.source)), pictureOf(scene.result), scene.settings);
    EXPECT_TRUE(done) << done.message;
    EXPECT_EQ(scene.result.pixels(), expected.pixels());
    EXPECT_TRUE(scene.result.guardsAreIntact());
    EXPECT_EQ(scene.source.pixels(), before.pixels());
    runs.note();
  });
  EXPECT_TRUE(runs.had(kernelsOf<TypeParam>(true)));
  ASSERT_TRUE(setThreads(0));
}

TYPED_TEST(Calls, MakeWhatTheModelSays) {
  KernelRunsOfCases runs;
  forRandomCases(200, [&](Random& random) {
    Scene<TypeParam> scene(random, 20);
    const model::Picture expected = scene.modelled();
    const CpuLevel level(randomCpuLevel(random));
    ASSERT_TRUE(run(scene.method, asSource(pictureOf(scene.source)), pictureOf(scene.result), scene.settings));
    HvTexture<TypeParam, AccumOf<TypeParam>> have;
    scene.result.wrapIn(have);
    EXPECT_TRUE(equalsModel(have, expected));
    runs.note();
  });
  EXPECT_TRUE(runs.had(kernelsOf<TypeParam>(true)));
}

TYPED_TEST(Calls, BlurInPlaceAsElsewhere) {
  KernelRunsOfCases runs;
  forRandomCases(300, [&](Random& random) {
    Scene<TypeParam> scene(random, 90);
    if (scene.settings.channels == Channels::Grey) return;
    scene.result = scene.source;
    const CpuLevel level(randomCpuLevel(random));
    ASSERT_TRUE(blur(asSource(pictureOf(scene.source)), pictureOf(scene.result), scene.settings));
    const Result done = blur(asSource(pictureOf(scene.source)), pictureOf(scene.source), scene.settings);
    EXPECT_TRUE(done) << done.message;
    EXPECT_EQ(scene.source.pixels(), scene.result.pixels());
    EXPECT_TRUE(scene.source.guardsAreIntact());
    runs.note();
  });
  EXPECT_TRUE(runs.had(kernelsOf<TypeParam>(false)));
}

// Source and result as the two halves of wide rows, and as the two fields of one picture.
TYPED_TEST(Calls, PicturesMayLieBesideEachOther) {
  forRandomCases(100, [](Random& random) {
    Scene<TypeParam> scene(random, 60);
    const Canvas<TypeParam> expected = scene.filtered();
    const bool halves = random.oneIn(2);
    const int w = scene.width;
    const int h = scene.height;
    std::vector<TypeParam> memory(static_cast<std::size_t>(2 * w * h));
    const auto rowAt = [&](int half, int y) {
      return memory.data() + (halves ? 2 * w * y + half * w : w * (2 * y + half));
    };
    for (int y = 0; y < h; ++y) {
      std::copy_n(&scene.source.at(0, y), w, rowAt(0, y));
      std::copy_n(&scene.result.at(0, y), w, rowAt(1, y));
    }
    const auto stride = static_cast<std::ptrdiff_t>(sizeof(TypeParam)) * 2 * w;
    const ConstPicture from{rowAt(0, 0), kFormatOf<TypeParam>, w, h, stride};
    const Result done = run(scene.method, from, {rowAt(1, 0), from.format, w, h, stride}, scene.settings);
    ASSERT_TRUE(done) << done.message;
    for (int y = 0; y < h; ++y) {
      for (int x = 0; x < w; ++x) {
        ASSERT_EQ(rowAt(1, y)[x], expected.at(x, y));
        ASSERT_EQ(rowAt(0, y)[x], scene.source.at(x, y));
      }
    }
  });
}

// Several threads at once, some on the library's threads, some on their own, while the number changes.
TYPED_TEST(Calls, ComeFromSeveralThreads) {
  std::vector<std::thread> callers;
  for (std::uint64_t caller = 0; caller < 4; ++caller) {
    callers.emplace_back([caller] {
      for (std::uint64_t i = 0; i < 12; ++i) {
        Random random(caller * 100 + i);
        Scene<TypeParam> scene(random, 40);
        const Canvas<TypeParam> before = scene.result;
        scene.settings.onThisThread = true;
        ASSERT_TRUE(run(scene.method, asSource(pictureOf(scene.source)), pictureOf(scene.result), scene.settings));
        const Canvas<TypeParam> alone = scene.result;
        scene.result = before;
        scene.settings.onThisThread = false;
        if (caller == 0) {
          ASSERT_TRUE(setThreads(static_cast<std::int32_t>(i % 4)));
        }
        ASSERT_TRUE(run(scene.method, asSource(pictureOf(scene.source)), pictureOf(scene.result), scene.settings));
        ASSERT_EQ(scene.result.pixels(), alone.pixels());
      }
    });
  }
  for (std::thread& caller : callers)
    caller.join();
  ASSERT_TRUE(setThreads(0));
}

TYPED_TEST(Calls, OnThisThreadNoOtherThreadWorks) {
  Canvas<TypeParam> source(64, 64);
  Canvas<TypeParam> result(64, 64);
  ASSERT_TRUE(setThreads(4));
  for (const bool alone : {false, true}) {
    std::atomic<int> others{0};
    Settings settings;
    settings.channels = Channels::Luminance;
    settings.onThisThread = alone;
    settings.interrupt = [&others, self = std::this_thread::get_id()] {
      if (std::this_thread::get_id() != self) ++others;
      return false;
    };
    ASSERT_TRUE(sharpen(asSource(pictureOf(source)), pictureOf(result), settings));
    EXPECT_EQ(others == 0, alone);
  }
  ASSERT_TRUE(setThreads(0));
}

TYPED_TEST(Calls, StopWhenTheyAreAskedTo) {
  Canvas<TypeParam> source(64, 64);
  Canvas<TypeParam> result(64, 64);
  std::atomic<int> left{40};
  Settings settings;
  settings.interrupt = [&left] { return --left <= 0; };
  const Result stopped = blur(asSource(pictureOf(source)), pictureOf(result), settings);
  EXPECT_EQ(stopped.code, Code::Interrupted);
  EXPECT_EQ(stopped.message, "interrupted: settings.interrupt asked for it");
  settings.interrupt = [] { return false; };
  const Result done = blur(asSource(pictureOf(source)), pictureOf(result), settings);
  EXPECT_EQ(done.code, Code::Done);
  EXPECT_EQ(done.message, "");
}

TYPED_TEST(Calls, VectorCodeRunsWhereItIsChosen) {
  Canvas<TypeParam> source(64, 64);
  Canvas<TypeParam> result(64, 64);
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    ASSERT_TRUE(blur(asSource(pictureOf(source)), pictureOf(result)));
    const std::vector<KernelRun> runs = takeKernelRuns();
    EXPECT_EQ(!runs.empty(), name != "twin") << name;
    EXPECT_TRUE(ranAtThisLevel(runs));
  }
}

}  // namespace
}  // namespace vblur::test
