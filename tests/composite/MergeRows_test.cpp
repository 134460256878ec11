// Vector code of every merge method in every form against its plain twin, at every level of this machine.
#include "composite/MergeRows.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "composite/RowWeights.h"
#include "tests/composite/AimedPixels.h"
#include "tests/composite/MergeKernels.h"
#include "tests/model/window.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

constexpr float kRowBlends[] = {0.0f, 0.1f, 0.25f, 0.4999f, 0.5f, 0.501f, 0.51f, 0.75f, 0.987f, 1.0f};
constexpr float kRowGains[][2] = {{1.0f, 1.0f},    {1.003f, 0.998f}, {0.9f, 0.45f}, {0.0f, 1.0f},   {1.0f, 0.0f},
                                  {-1.0f, 0.5f},   {0.3f, -1.0f},    {5.0f, 2.75f}, {-5.0f, -0.7f}, {16.0f, -16.0f},
                                  {-16.0f, 16.0f}, {1e-30f, 1e-20f}, {1e-22f, 8.0f}};

struct Settings {
  std::int32_t method = 0;
  float blend = 0.5f;
  float gainA = 1.0f;
  float gainB = 1.0f;
};

std::ostream& operator<<(std::ostream& out, const Settings& s) {
  return out << "method " << s.method << " blend " << s.blend << " gains " << s.gainA << " " << s.gainB;
}

// Where the output lies.
enum class Place { Apart, OverA, OverB };

template <class Pixel>
struct Pictures {
  Pictures(Random& random, std::int32_t width, std::int32_t height)
      : a(width, height), b(width, height), out(width, height) {
    FillAimed(a, random);
    FillAimed(b, random);
    FillAimed(out, random);
  }
  HvTexture<Pixel, Rf> a;
  HvTexture<Pixel, Rf> b;
  HvTexture<Pixel, Rf> out;
};

template <class Pixel>
HvMerge<Pixel, Rf, Pixel::kOne> MergeOf(const Settings& settings) {
  HvMerge<Pixel, Rf, Pixel::kOne> merge;
  merge.rgbMode = 1;
  merge.method = settings.method;
  merge.setGains(settings.gainA, settings.gainB);
  merge.setBlend(settings.blend);
  return merge;
}

// The output of a merge at the level in use.
template <class Pixel>
std::vector<Pixel> Merged(const Settings& settings, const Pictures<Pixel>& pictures, Place place,
                          const std::optional<model::Window>& window) {
  const ThreadCount threads(1);
  HvTexture<Pixel, Rf> out(pictures.out.width(), pictures.out.height());
  CopyPixels(place == Place::Apart ? pictures.out : place == Place::OverA ? pictures.a : pictures.b, out);
  HvTexture<Pixel, Rf> a;
  HvTexture<Pixel, Rf> b;
  a.referTo(pictures.a);
  b.referTo(pictures.b);
  if (place == Place::OverA) a.data = out.data;
  if (place == Place::OverB) b.data = out.data;
  auto merge = MergeOf<Pixel>(settings);
  if (window) merge.setWindow(window->x1, window->y1, window->x2, window->y2);
  merge.process(&a, &b, &out);
  return PixelsOf(out);
}

class MergeRows : public AtEachLevel {
 protected:
  // The caller asserts which kernels have run; the twin runs none.
  template <class Pixel>
  static void Compare(const Settings& settings, const Pictures<Pixel>& pictures, Place place,
                      const std::optional<model::Window>& window = {}) {
    const auto run = [&] { return Merged(settings, pictures, place, window); };
    const std::vector<Pixel> expected = AtTwin(run);
    ASSERT_TRUE(kernelsRan({})) << settings;
    const std::vector<Pixel> result = run();
    for (std::size_t i = 0; i < result.size(); ++i) {
      ASSERT_EQ(result[i], expected[i]) << GetParam() << " " << settings << " bits " << sizeof(Pixel) * 2 << " pixel "
                                        << i << " of " << pictures.out.width() << " wide, place "
                                        << static_cast<int>(place) << PairText(pictures, i);
    }
  }

  // On whole rows, which one kernel processes.
  template <class Pixel>
  static void CompareRows(const Settings& settings, const Pictures<Pixel>& pictures, Place place) {
    Compare(settings, pictures, place);
    if (HasFatalFailure()) return;
    ASSERT_TRUE(kernelsRan({mergeKernelName(MergeOf<Pixel>(settings))})) << settings;
  }

  // Whether the kernel has run, perhaps beside those that copy runs.
  static bool Entered(const std::string& kernel) {
    const std::vector<KernelRun> runs = takeKernelRuns();
    EXPECT_TRUE(ranAtThisLevel(runs));
    return std::any_of(runs.begin(), runs.end(), [&](const KernelRun& run) { return run.name == kernel; });
  }

  template <class Pixel>
  static std::string PairText(const Pictures<Pixel>& pictures, std::size_t i) {
    const Pixel a = PixelsOf(pictures.a)[i];
    const Pixel b = PixelsOf(pictures.b)[i];
    std::string text = ":";
    for (int c = 0; c < 4; ++c)
      text += " " + std::to_string(a[c]) + "/" + std::to_string(b[c]);
    return text;
  }

  template <class Pixel>
  static void AllFormsOfAllMethods() {
    Random random(11);
    for (const std::int32_t method : kMergeMethods) {
      for (const auto& gains : kRowGains) {
        const Pictures<Pixel> pictures(random, random.within(60, 140), 3);
        for (const float blend : kRowBlends) {
          const auto place = static_cast<Place>(random.within(0, 2));
          CompareRows(Settings{method, blend, gains[0], gains[1]}, pictures, place);
          if (HasFatalFailure()) return;
        }
      }
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Levels, MergeRows, testing::ValuesIn(vectorLevels()), levelName);

TEST_P(MergeRows, AllFormsEqualTheTwinAtEightBits) {
  AllFormsOfAllMethods<R8>();
}

TEST_P(MergeRows, AllFormsEqualTheTwinAtSixteenBits) {
  AllFormsOfAllMethods<R16>();
}

TEST_P(MergeRows, AllFormsEqualTheTwinInFloats) {
  AllFormsOfAllMethods<Rf>();
}

// Floats have no limit to their weights.
TEST_P(MergeRows, AnyWeightsOfFloatsEqualTheTwin) {
  Random random(42);
  const Pictures<Rf> pictures(random, 200, 1);
  for (const float gain : {16.01f, -1e9f, 3e38f, 0.0f, std::numeric_limits<float>::infinity()}) {
    for (const std::int32_t method : kMergeMethods) {
      for (const float blend : {0.0f, 0.3f, 0.5f, 0.9f, 1.0f})
        CompareRows(Settings{method, blend, gain, 1.0f}, pictures, Place::OverB);
      if (HasFatalFailure()) return;
    }
  }
}

// All pairs in every component, with equal and with different neighbours.
TEST_P(MergeRows, AllPairsOfEightBitComponents) {
  Random random(5);
  Pictures<R8> pictures(random, 256, 256);
  for (const bool alike : {true, false}) {
    for (std::int32_t p = 0; p < 256; ++p) {
      for (std::int32_t q = 0; q < 256; ++q) {
        *pictures.a.at(p, q) = alike ? Make<R8>(p, p, p, p) : Make<R8>(p, q, 255 - p, p ^ q);
        *pictures.b.at(p, q) = alike ? Make<R8>(q, q, q, q) : Make<R8>(q, 255 - p, p, q);
      }
    }
    for (const std::int32_t method : kMergeMethods) {
      for (const float blend : {0.5f, 0.496f, 0.504f, 0.35f}) {
        CompareRows(Settings{method, blend}, pictures, Place::Apart);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST_P(MergeRows, RowsOfEveryLength) {
  Random random(21);
  for (std::int32_t width = 1; width <= 70; ++width) {
    for (const Place place : {Place::Apart, Place::OverA, Place::OverB}) {
      const Settings settings{random.oneOf({kMergeScreen, kMergeAdd, kMergeLuminance, kMergeHue, kMergeDarken}),
                              random.oneOf({0.2f, 0.5f, 0.8f}), 1.0f, random.oneOf({1.0f, 0.6f})};
      CompareRows(settings, Pictures<R8>(random, width, 2), place);
      CompareRows(settings, Pictures<R16>(random, width, 2), place);
      CompareRows(settings, Pictures<Rf>(random, width, 2), place);
      if (HasFatalFailure()) return;
    }
  }
}

template <class Pixel>
Settings RandomSettings(Random& random) {
  Settings settings{kMergeMethods[static_cast<std::size_t>(random.within(0, kMergeMethods.size() - 1))]};
  settings.blend = random.oneIn(3) ? 0.5f : random.between(0.0f, 1.0f);
  if (random.oneIn(2)) return settings;
  const float most = random.oneOf({1.0f, 3.0f, 16.0f});
  settings.gainA = random.between(-most, most);
  settings.gainB = random.between(random.oneIn(2) ? 0.0f : -most, most);
  return settings;
}

// Windows, boxes and edge methods: runs of steps -1, 0 and 1 of any length; inputs may share the output's memory.
TEST_P(MergeRows, RunsOfAllStepsEqualTheTwin) {
  int kernels = 0;
  forRandomCases(300, [&](Random& random) {
    const auto compare = [&]<class Pixel>(Pixel) {
      Pictures<Pixel> pictures(random, random.within(1, 90), 2);
      setRandomSurroundings(random, pictures.a, storageRange<Pixel>());
      setRandomSurroundings(random, pictures.b, storageRange<Pixel>());
      const std::int32_t x = random.within(-15, 70);
      Compare(RandomSettings<Pixel>(random), pictures, static_cast<Place>(random.within(0, 2)),
              model::Window{x, 0, x + random.within(0, 90), 1});
      const std::vector<KernelRun> runs = takeKernelRuns();
      EXPECT_TRUE(ranAtThisLevel(runs));
      kernels += runs.empty() ? 0 : 1;
    };
    compare(R8{});
    compare(R16{});
    compare(Rf{});
  });
  EXPECT_GT(kernels, 0);
}

// Runs of one repeated pixel, longer than the buffer of StraightRuns.h.
TEST_P(MergeRows, LongRunsOfOnePixel) {
  Random random(31);
  Pictures<R16> pictures(random, 1100, 1);
  pictures.b.setBounds(300, 310, 0, 0);
  for (const std::int32_t edge : {kEdgeColour, kEdgeRepeat, kEdgeReflect, kEdgeWrap}) {
    pictures.b.setEdgeMethods(edge, edge);
    Compare(Settings{kMergeOverlay, 0.6f}, pictures, Place::OverA);
    EXPECT_TRUE(Entered("mergeRow 16"));
  }
}

// Reversed runs, longer than the buffer of StraightRuns.h.
TEST_P(MergeRows, LongRunsBackwards) {
  Random random(32);
  Pictures<R8> pictures(random, 1500, 1);
  pictures.a.setBounds(0, 699, 0, 0);
  pictures.a.setEdgeMethods(kEdgeReflect, kEdgeReflect);
  Compare(Settings{kMergeScreen}, pictures, Place::Apart);
  EXPECT_TRUE(Entered(mergeKernelName(MergeOf<R8>(Settings{kMergeScreen}))));
}

// The mix of the colours is (-1, -131073, ...): its saturation is 2^31, which does not fit.
TEST_P(MergeRows, ASaturationThatDoesNotFit) {
  Random random(51);
  Pictures<R16> pictures(random, 32, 1);
  for (std::int32_t x = 0; x < 32; ++x) {
    *pictures.a.at(x, 0) = x % 2 == 0 ? Make<R16>(0, -32768, -x, 5) : Make<R16>(300 * x, 7 * x, -900 * x, 5);
    *pictures.b.at(x, 0) = Make<R16>(-1, -1, -1 - x, 9);
  }
  for (const std::int32_t method : {kMergeHue, kMergeSaturation, kMergeValue, kMergeColour}) {
    CompareRows(Settings{method, 0.25f, 8.0f, 2.0f}, pictures, Place::Apart);
    CompareRows(Settings{method, 0.75f, 8.0f, 2.0f}, pictures, Place::Apart);
  }
}

// Saturations far above One at a value of 1, where one step of a share can change the result.
TEST_P(MergeRows, EightBitSharesFarBeyondOne) {
  Random random(52);
  Pictures<R8> pictures(random, 256, 256);
  for (std::int32_t red = 0; red < 256; ++red) {
    for (std::int32_t green = 0; green < 256; ++green) {
      *pictures.a.at(red, green) = Make<R8>(red, green, 1, 0);
      *pictures.b.at(red, green) = Make<R8>(1, 0, 0, 0);
    }
  }
  for (int i = 0; i < 40; i += kShareOfCases)
    CompareRows(Settings{kMergeColour, 0.5f, -2.01f - 0.0243f * static_cast<float>(i), 1.0f}, pictures, Place::Apart);
}

// Results could leave the range of 32-bit integers, or be NaN.
TEST_P(MergeRows, WeightsBeyondTheLimitTakeThePlainCode) {
  Random random(41);
  const Pictures<R8> pictures8(random, 70, 1);
  const Pictures<R16> pictures16(random, 70, 1);
  for (const float gain :
       {16.01f, -17.0f, 1e9f, 3e38f, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    for (const std::int32_t method : kMergeMethods) {
      for (const float blend : {0.3f, 0.5f, 0.9f}) {
        for (const bool first : {true, false}) {
          const Settings settings{method, blend, first ? gain : 1.0f, first ? 1.0f : gain};
          Compare(settings, pictures8, Place::Apart);
          EXPECT_TRUE(kernelsRan({})) << settings;
          Compare(settings, pictures16, Place::Apart);
          EXPECT_TRUE(kernelsRan({})) << settings;
          if (HasFailure()) return;
        }
      }
    }
  }
}

TEST(MergeRowsOfMethods, OnlyTheTwinLevelAndMethodsNotInUseHaveNone) {
  const MergeWeights weights;
  for (const std::int32_t method : kMergeMethods)
    EXPECT_NE(mergeRowFor<R8>(method, MergeForm::Integer, weights), nullptr) << method;
  EXPECT_EQ(mergeRowFor<R8>(15, MergeForm::Integer, weights), nullptr);
  EXPECT_EQ(mergeRowFor<R16>(-1, MergeForm::Integer, weights), nullptr);
  const CpuLevel twin("twin");
  EXPECT_EQ(mergeRowFor<R16>(kMergeAdd, MergeForm::Integer, weights), nullptr);
}

}  // namespace
}  // namespace vblur::test
