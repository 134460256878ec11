// Every method of the merge in every form by vector code against its plain twin, at every instruction set that
// this machine has.
#include "composite/MergeRows.h"

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include "composite/ExactQuotients.h"
#include "composite/RowWeights.h"
#include "tests/composite/AimedPixels.h"
#include "tests/model/window.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

constexpr std::array kRowMethods = {
    kMergeLuminance, kMergeChroma,   kMergeHue,        kMergeSaturation, kMergeValue,     kMergeColour,
    kMergeDarken,    kMergeLighten,  kMergeScreen,     kMergeMultiply,   kMergeAdd,       kMergeAddOver,
    kMergeAddUnder,  kMergeSubtract, kMergeDifference, kMergeOverlay,    kMergeHardLight,
};
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

// Where the result goes.
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

// The pixels that a merge leaves where its result goes.
template <class Pixel>
std::vector<Pixel> Merged(const std::string& level, const Settings& settings, const Pictures<Pixel>& pictures,
                          Place place, const std::optional<model::Window>& window = {}) {
  const CpuLevel here(level);
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

class MergeRowsAt : public testing::TestWithParam<std::string> {
 protected:
  template <class Pixel>
  void Compare(const Settings& settings, const Pictures<Pixel>& pictures, Place place,
               const std::optional<model::Window>& window = {}) {
    const std::vector<Pixel> expected = Merged("twin", settings, pictures, place, window);
    const std::uint64_t calls = HvVectorCalls();
    const std::vector<Pixel> result = Merged(GetParam(), settings, pictures, place, window);
    entered = HvVectorCalls() > calls;
    for (std::size_t i = 0; i < result.size(); ++i) {
      ASSERT_EQ(result[i], expected[i]) << GetParam() << " " << settings << " bits " << sizeof(Pixel) * 2 << " pixel "
                                        << i << " of " << pictures.out.width() << " wide, place "
                                        << static_cast<int>(place) << PairText(pictures, i);
    }
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
  void AllFormsOfAllMethods() {
    Random random(11);
    for (const std::int32_t method : kRowMethods) {
      for (const auto& gains : kRowGains) {
        const Pictures<Pixel> pictures(random, random.within(60, 140), 3);
        for (const float blend : kRowBlends) {
          const auto place = static_cast<Place>(random.within(0, 2));
          Compare(Settings{method, blend, gains[0], gains[1]}, pictures, place);
          if (HasFatalFailure()) return;
          ASSERT_TRUE(entered) << method;
        }
      }
    }
  }

  bool entered = false;
};

INSTANTIATE_TEST_SUITE_P(Levels, MergeRowsAt, testing::ValuesIn(VectorLevels()));

TEST_P(MergeRowsAt, AllFormsEqualTheTwinAtEightBits) {
  AllFormsOfAllMethods<R8>();
}

TEST_P(MergeRowsAt, AllFormsEqualTheTwinAtSixteenBits) {
  AllFormsOfAllMethods<R16>();
}

// Each component against each, in every place of a pixel, beside neighbours that are like it and that are not.
TEST_P(MergeRowsAt, AllPairsOfEightBitComponents) {
  Random random(5);
  Pictures<R8> pictures(random, 256, 256);
  for (const bool alike : {true, false}) {
    for (std::int32_t p = 0; p < 256; ++p) {
      for (std::int32_t q = 0; q < 256; ++q) {
        *pictures.a.at(p, q) = alike ? Make<R8>(p, p, p, p) : Make<R8>(p, q, 255 - p, p ^ q);
        *pictures.b.at(p, q) = alike ? Make<R8>(q, q, q, q) : Make<R8>(q, 255 - p, p, q);
      }
    }
    for (const std::int32_t method : kRowMethods) {
      for (const float blend : {0.5f, 0.496f, 0.504f, 0.35f}) {
        Compare(Settings{method, blend}, pictures, Place::Apart);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST_P(MergeRowsAt, RowsOfEveryLength) {
  Random random(21);
  for (std::int32_t width = 1; width <= 70; ++width) {
    for (const Place place : {Place::Apart, Place::OverA, Place::OverB}) {
      const Settings settings{random.oneOf({kMergeScreen, kMergeAdd, kMergeLuminance, kMergeHue, kMergeDarken}),
                              random.oneOf({0.2f, 0.5f, 0.8f}), 1.0f, random.oneOf({1.0f, 0.6f})};
      Compare(settings, Pictures<R8>(random, width, 2), place);
      Compare(settings, Pictures<R16>(random, width, 2), place);
      if (HasFatalFailure()) return;
    }
  }
}

template <class Pixel>
Settings RandomSettings(Random& random) {
  Settings settings{kRowMethods[static_cast<std::size_t>(random.within(0, kRowMethods.size() - 1))]};
  settings.blend = random.oneIn(3) ? 0.5f : random.between(0.0f, 1.0f);
  if (random.oneIn(2)) return settings;
  const float most = random.oneOf({1.0f, 3.0f, 16.0f});
  settings.gainA = random.between(-most, most);
  settings.gainB = random.between(random.oneIn(2) ? 0.0f : -most, most);
  return settings;
}

// Windows, boxes, edge methods: runs of steps -1, 0 and 1 that end anywhere, over pictures that may be the
// result's own.
TEST_P(MergeRowsAt, RunsOfAllStepsEqualTheTwin) {
  forRandomCases(300, [this](Random& random) {
    const auto compare = [&]<class Pixel>(Pixel) {
      Pictures<Pixel> pictures(random, random.within(1, 90), 2);
      setRandomSurroundings(random, pictures.a, storageRange<Pixel>());
      setRandomSurroundings(random, pictures.b, storageRange<Pixel>());
      const std::int32_t x = random.within(-15, 70);
      Compare(RandomSettings<Pixel>(random), pictures, static_cast<Place>(random.within(0, 2)),
              model::Window{x, 0, x + random.within(0, 90), 1});
    };
    compare(R8{});
    compare(R16{});
  });
}

// A run longer than what is straightened at once.
TEST_P(MergeRowsAt, LongRunsOfOnePixel) {
  Random random(31);
  Pictures<R16> pictures(random, 1100, 1);
  pictures.b.setBounds(300, 310, 0, 0);
  for (const std::int32_t edge : {kEdgeColour, kEdgeRepeat, kEdgeReflect, kEdgeWrap}) {
    pictures.b.setEdgeMethods(edge, edge);
    Compare(Settings{kMergeOverlay, 0.6f}, pictures, Place::OverA);
    EXPECT_TRUE(entered);
  }
}

// Runs that go backwards, longer than what is straightened at once.
TEST_P(MergeRowsAt, LongRunsBackwards) {
  Random random(32);
  Pictures<R8> pictures(random, 1500, 1);
  pictures.a.setBounds(0, 699, 0, 0);
  pictures.a.setEdgeMethods(kEdgeReflect, kEdgeReflect);
  Compare(Settings{kMergeScreen}, pictures, Place::Apart);
  EXPECT_TRUE(entered);
}

// The mix of the colours is (-1, -131073, ...): its saturation is 2^31 and does not fit.
TEST_P(MergeRowsAt, ASaturationThatDoesNotFit) {
  Random random(51);
  Pictures<R16> pictures(random, 32, 1);
  for (std::int32_t x = 0; x < 32; ++x) {
    *pictures.a.at(x, 0) = x % 2 == 0 ? Make<R16>(0, -32768, -x, 5) : Make<R16>(300 * x, 7 * x, -900 * x, 5);
    *pictures.b.at(x, 0) = Make<R16>(-1, -1, -1 - x, 9);
  }
  for (const std::int32_t method : {kMergeHue, kMergeSaturation, kMergeValue, kMergeColour}) {
    Compare(Settings{method, 0.25f, 8.0f, 2.0f}, pictures, Place::Apart);
    Compare(Settings{method, 0.75f, 8.0f, 2.0f}, pictures, Place::Apart);
  }
}

// Shares far beyond One of a value of 1: now and then one step of a share shows in the result.
TEST_P(MergeRowsAt, EightBitSharesFarBeyondOne) {
  Random random(52);
  Pictures<R8> pictures(random, 256, 256);
  for (std::int32_t red = 0; red < 256; ++red) {
    for (std::int32_t green = 0; green < 256; ++green) {
      *pictures.a.at(red, green) = Make<R8>(red, green, 1, 0);
      *pictures.b.at(red, green) = Make<R8>(1, 0, 0, 0);
    }
  }
  for (int i = 0; i < 40; i += kShareOfCases)
    Compare(Settings{kMergeColour, 0.5f, -2.01f - 0.0243f * static_cast<float>(i), 1.0f}, pictures, Place::Apart);
}

// What could leave the range of 32-bit integers, or is not a number, is the plain code's.
TEST_P(MergeRowsAt, WeightsBeyondTheLimitTakeThePlainCode) {
  Random random(41);
  const Pictures<R8> pictures8(random, 70, 1);
  const Pictures<R16> pictures16(random, 70, 1);
  for (const float gain :
       {16.01f, -17.0f, 1e9f, 3e38f, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    for (const std::int32_t method : kRowMethods) {
      for (const float blend : {0.3f, 0.5f, 0.9f}) {
        for (const bool first : {true, false}) {
          const Settings settings{method, blend, first ? gain : 1.0f, first ? 1.0f : gain};
          Compare(settings, pictures8, Place::Apart);
          EXPECT_FALSE(entered && std::isfinite(gain)) << settings;
          Compare(settings, pictures16, Place::Apart);
          if (HasFailure()) return;
        }
      }
    }
  }
}

TEST(MergeRows, OnlyTheTwinLevelAndMethodsNotInUseHaveNone) {
  const MergeWeights weights;
  for (const std::int32_t method : kRowMethods)
    EXPECT_NE(mergeRowFor<R8>(method, MergeForm::Integer, weights), nullptr) << method;
  EXPECT_EQ(mergeRowFor<R8>(15, MergeForm::Integer, weights), nullptr);
  EXPECT_EQ(mergeRowFor<R16>(-1, MergeForm::Integer, weights), nullptr);
  const CpuLevel twin("twin");
  EXPECT_EQ(mergeRowFor<R16>(kMergeAdd, MergeForm::Integer, weights), nullptr);
}

TEST(ExactQuotients, EqualTheDivisionOverTheirWholeDomains) {
  for (std::uint32_t v = 0; v <= 65535; ++v)
    ASSERT_EQ(exact::over255(v), v / 255) << v;
  for (std::int32_t v = -(1 << 22); v <= 1 << 22; ++v)
    ASSERT_EQ(exact::smallOver255(v), v / 255) << v;
}

// Powers of two change neither the quotient's bits nor the corrected product's: one binade stands for all.
TEST(ExactQuotients, RoundedOnesEqualTheDivisionOfEveryFloat) {
  constexpr std::uint32_t kOne = 0x3F800000;
  constexpr std::uint32_t kTwo = 0x40000000;
  for (const float divisor : {255.0f, 3.0f * 255.0f, 3.0f * 16384.0f}) {
    for (std::uint32_t bits = kOne; bits < kTwo; bits += kShareOfCases) {
      const auto v = std::bit_cast<float>(bits);
      ASSERT_EQ(exact::rounded(v, divisor), v / divisor) << v << " by " << divisor;
      ASSERT_EQ(exact::rounded(-v, divisor), -v / divisor) << v << " by " << divisor;
    }
  }
}

// The quotients are monotonous: what holds on both sides of each step holds everywhere.
TEST(ExactQuotients, WideOnesEqualTheDivisionOnBothSidesOfEachStep) {
  constexpr std::int64_t kStep = kShareOfCases == 1 ? 1 : 61;
  const auto below = [](std::int64_t v) { return static_cast<std::int32_t>(std::max<std::int64_t>(v, kInt32Min)); };
  for (std::int64_t v = 255; v <= kInt32Max; v += 255 * kStep) {
    const auto step = static_cast<std::int32_t>(v);
    ASSERT_EQ(exact::wideOver255(step), step / 255) << v;
    ASSERT_EQ(exact::wideOver255(step - 1), (step - 1) / 255) << v;
    ASSERT_EQ(exact::wideOver255(below(-v)), below(-v) / 255) << v;
    ASSERT_EQ(exact::wideOver255(below(-v + 1)), below(-v + 1) / 255) << v;
  }
  ASSERT_EQ(exact::wideOver255(kInt32Max), kInt32Max / 255);
  ASSERT_EQ(exact::wideOver255(kInt32Min), kInt32Min / 255);
  for (std::uint32_t v = 32767; v <= 0x7FFFFFFFu - 32767; v += 32767) {
    ASSERT_EQ(exact::over32767(v), v / 32767) << v;
    ASSERT_EQ(exact::over32767(v - 1), (v - 1) / 32767) << v;
  }
  ASSERT_EQ(exact::over32767(0x7FFFFFFFu), 0x7FFFFFFFu / 32767);
  ASSERT_EQ(exact::over32767(0), 0u);
}

}  // namespace
}  // namespace vblur::test
