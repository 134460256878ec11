// Vector code of the plain mixes and the masks against its plain twin, at every level of this machine.
#include "composite/MixRows.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "composite/HvDsMaskFixer.h"
#include "composite/HvDsPaintCombiner.h"
#include "composite/HvQuickMixer.h"
#include "composite/MixCombiner.h"
#include "tests/composite/AimedPixels.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

template <class Pixel>
using MaskPixelOf = std::conditional_t<std::is_same_v<Pixel, R8>, C8, std::conditional_t<Pixel::kIntegral, C16, Cf>>;
template <class Pixel>
using StrengthOf = HvTexture<MaskPixelOf<Pixel>, Cf>;

template <class Pixel>
ComponentOf<Pixel> AnyStrength(Random& random) {
  if constexpr (Pixel::kIntegral) {
    return static_cast<ComponentOf<Pixel>>(
        random.oneIn(4) ? random.oneOf({0, 1, Pixel::kMin, Pixel::kMin + 1, Pixel::kMax, Pixel::kMax - 1})
                        : random.within(Pixel::kMin, Pixel::kMax));
  } else {
    return random.oneIn(4) ? random.oneOf({0.0f, 1.0f, -0.5f, 1.5f, 1e-40f, 3e38f}) : random.between(0.0f, 1.0f);
  }
}

template <class Pixel>
struct MixPictures {
  MixPictures(Random& random, std::int32_t width, std::int32_t height)
      : a(width, height), b(width, height), out(width, height), mask(width, height) {
    FillAimed(a, random);
    FillAimed(b, random);
    FillAimed(out, random);
    for (std::int32_t y = 0; y < height; ++y) {
      for (std::int32_t x = 0; x < width; ++x) {
        mask.at(x, y)->value = AnyStrength<Pixel>(random);
      }
    }
  }

  void Surround(Random& random) {
    setRandomSurroundings(random, a, storageRange<Pixel>());
    setRandomSurroundings(random, b, storageRange<Pixel>());
    mask.setOrigin(random.within(-9, 9), 0);
    if (random.oneIn(2)) mask.setEdgeMethods(kEdgeReflect, kEdgeReflect);
  }

  HvTexture<Pixel, Rf> a;
  HvTexture<Pixel, Rf> b;
  HvTexture<Pixel, Rf> out;
  StrengthOf<Pixel> mask;
};

class MixRows : public AtEachLevel {
 protected:
  // stage(a, b, mask, out); either input may share the output's memory. The caller asserts which kernels have run; the
  // twin runs none.
  template <class Pixel, class Stage>
  static void Compare(const MixPictures<Pixel>& pictures, Random& random, const Stage& stage) {
    const int place = random.within(0, 2);
    const ThreadCount threads(1);
    const auto run = [&] {
      HvTexture<Pixel, Rf> out(pictures.out.width(), pictures.out.height());
      CopyPixels(place == 0 ? pictures.out : place == 1 ? pictures.a : pictures.b, out);
      HvTexture<Pixel, Rf> a;
      HvTexture<Pixel, Rf> b;
      StrengthOf<Pixel> mask;
      a.referTo(pictures.a);
      b.referTo(pictures.b);
      mask.referTo(pictures.mask);
      if (place == 1) a.data = out.data;
      if (place == 2) b.data = out.data;
      stage(a, b, mask, out);
      return PixelsOf(out);
    };
    const std::vector<Pixel> expected = AtTwin(run);
    ASSERT_TRUE(kernelsRan({}));
    const std::vector<Pixel> result = run();
    for (std::size_t i = 0; i < result.size(); ++i)
      ASSERT_EQ(result[i], expected[i]) << GetParam() << " bits " << sizeof(Pixel) * 2 << " pixel " << i << " of "
                                        << pictures.out.width() << " wide, place " << place;
  }

  // Once on whole rows, which the kernel alone processes, and once with random boxes, origins and edge methods.
  template <class Pixel, class MakeStage>
  static void CompareAll(int cases, const std::string& kernel, const MakeStage& makeStage) {
    forRandomCases(cases, [&](Random& random) {
      MixPictures<Pixel> pictures(random, random.within(1, 90), 2);
      const auto stage = makeStage(random);
      Compare(pictures, random, stage);
      EXPECT_TRUE(kernelsRan({kernel + " " + std::to_string(2 * sizeof(Pixel))}));
      pictures.Surround(random);
      Compare(pictures, random, stage);
      EXPECT_TRUE(ranAtThisLevel(takeKernelRuns()));
    });
  }
};

INSTANTIATE_TEST_SUITE_P(Levels, MixRows, testing::ValuesIn(vectorLevels()), levelName);

template <class Pixel>
auto MixStageOf(float weightA, float weightB) {
  return [=](auto& a, auto& b, auto&, auto& out) {
    MixCombiner<Pixel, Rf, Pixel::kOne> mix;
    mix.weightA = weightA;
    mix.weightB = weightB;
    mix.process(&a, &b, &out);
  };
}

template <class Pixel>
auto RandomMix(Random& random) {
  const float share = random.oneOf({0.0f, 0.25f, 0.5f, 1.0f, random.between(0.0f, 1.0f)});
  if (random.oneIn(2)) return MixStageOf<Pixel>(share, 1.0f - share);
  return MixStageOf<Pixel>(random.between(-16.0f, 16.0f), random.oneOf({0.0f, -16.0f, 16.0f, 1e-30f, share}));
}

TEST_P(MixRows, MixCombinerEqualsTheTwin) {
  CompareAll<R8>(300, "mixRow", RandomMix<R8>);
  CompareAll<R16>(300, "mixRow", RandomMix<R16>);
  CompareAll<Rf>(300, "mixRow", RandomMix<Rf>);
}

TEST_P(MixRows, WeightsBeyondTheLimitTakeThePlainMix) {
  Random random(3);
  const MixPictures<R8> pictures8(random, 70, 1);
  const MixPictures<R16> pictures16(random, 70, 1);
  for (const float weight :
       {16.01f, -1e9f, 3e38f, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    Compare(pictures8, random, MixStageOf<R8>(weight, 0.5f));
    EXPECT_TRUE(kernelsRan({}));
    Compare(pictures16, random, MixStageOf<R16>(0.5f, weight));
    EXPECT_TRUE(kernelsRan({}));
  }
}

template <class Pixel>
auto RandomQuickMix(Random& random) {
  const float amount = random.oneOf({0.0f, 1.0f, 0.5f, random.between(0.0f, 1.0f), random.between(0.0f, 1.0f)});
  const bool overTarget = random.oneIn(2);
  return [=](auto& a, auto& b, auto&, auto& out) {
    HvQuickMixer<Pixel, Rf, Pixel::kMax> mixer;
    mixer.amount = amount;
    mixer.run(&a, overTarget ? nullptr : &b, &out);
  };
}

TEST_P(MixRows, QuickMixerEqualsTheTwin) {
  CompareAll<R8>(300, "quickMixRow", RandomQuickMix<R8>);
  CompareAll<R16>(300, "quickMixRow", RandomQuickMix<R16>);
  CompareAll<Rf>(300, "quickMixRow", RandomQuickMix<Rf>);
}

// All components, all amounts.
TEST_P(MixRows, QuickMixOfAllPairsOfEightBitComponents) {
  std::vector<R8> a;
  std::vector<R8> b;
  for (std::int32_t p = 0; p < 256; ++p) {
    for (std::int32_t q = 0; q < 256; q += 4) {
      a.push_back(Make<R8>(p, p, p, p));
      b.push_back(Make<R8>(q, q + 1, q + 2, q + 3));
    }
  }
  std::vector<R8> out(a.size());
  for (std::int32_t amount = 0; amount <= 255; amount += kShareOfCases) {
    quickMixRow(a.data(), b.data(), out.data(), static_cast<std::int32_t>(a.size()), amount);
    int wrong = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
      for (int c = 0; c < 4; ++c)
        wrong += out[i][c] != mixInt<255>(a[i][c], b[i][c], amount);
    }
    ASSERT_EQ(wrong, 0) << amount;
  }
  EXPECT_TRUE(kernelsRan({"quickMixRow 8"}));
}

template <class Pixel>
auto RandomFix(Random& random) {
  const std::int32_t channels = random.within(0, 6);
  return [=](auto& a, auto&, auto&, auto& out) {
    HvDsMaskFixer<Pixel, Rf, Pixel::kMax> fixer;
    fixer.mixByAlpha = 1;
    fixer.channels = channels;
    fixer.process(&a, &out);
  };
}

TEST_P(MixRows, MaskFixerEqualsTheTwin) {
  CompareAll<R8>(300, "mixByAlphaRow", RandomFix<R8>);
  CompareAll<R16>(300, "mixByAlphaRow", RandomFix<R16>);
  CompareAll<Rf>(300, "mixByAlphaRow", RandomFix<Rf>);
}

template <class Pixel>
auto RandomPaint(Random&) {
  return [](auto& a, auto&, auto& mask, auto& out) {
    HvDsPaintCombiner<Pixel, Rf, MaskPixelOf<Pixel>, Cf> painter;
    painter.process(&a, &mask, &out);
  };
}

TEST_P(MixRows, PaintCombinerEqualsTheTwin) {
  CompareAll<R8>(300, "paintRow", RandomPaint<R8>);
  CompareAll<R16>(300, "paintRow", RandomPaint<R16>);
  CompareAll<Rf>(300, "paintRow", RandomPaint<Rf>);
}

}  // namespace
}  // namespace vblur::test
