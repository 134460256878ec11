// Mixing a finished picture over its source by a mask.
#include "composite/HvDsPaintCombiner.h"

#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/composite/FloatPixels.h"
#include "tests/model/masks.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/StopAfter.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

template <class Pixel>
using MaskPixelOf =
    std::conditional_t<std::is_same_v<Pixel, R8>, C8, std::conditional_t<std::is_same_v<Pixel, R16>, C16, Cf>>;
template <class Pixel>
using MaskOf = HvTexture<MaskPixelOf<Pixel>, Cf>;
template <class Pixel>
using Painter = HvDsPaintCombiner<Pixel, Rf, MaskPixelOf<Pixel>, Cf>;

template <class Pixel>
class HvDsPaintCombinerAtBothDepths : public testing::Test {
 protected:
  static Pixel Shown(const Pixel& effect, const Pixel& source, std::int32_t mask) {
    HvTexture<Pixel, Rf> from(1, 1);
    HvTexture<Pixel, Rf> output(1, 1);
    MaskOf<Pixel> strength(1, 1);
    *from.at(0, 0) = source;
    *output.at(0, 0) = effect;
    strength.at(0, 0)->value = static_cast<ComponentOf<Pixel>>(mask);
    Painter<Pixel> painter;
    painter.process(&from, &strength, &output);
    return *output.at(0, 0);
  }
};

TYPED_TEST_SUITE(HvDsPaintCombinerAtBothDepths, Depths, TypeNames);

template <class Pixel>
class HvDsPaintCombinerAtAllDepths : public testing::Test {};

TYPED_TEST_SUITE(HvDsPaintCombinerAtAllDepths, DepthsAndFloats, TypeNames);

TYPED_TEST(HvDsPaintCombinerAtBothDepths, EndsAreSourceAndEffect) {
  Random random(4);
  for (int i = 0; i < 1000; ++i) {
    const auto effect = RandomPixel<TypeParam>(random);
    const auto source = RandomPixel<TypeParam>(random);
    ASSERT_EQ(this->Shown(effect, source, 0), source);
    ASSERT_EQ(this->Shown(effect, source, TypeParam::kMax), effect);
  }
}

TYPED_TEST(HvDsPaintCombinerAtBothDepths, EqualsTheModelForEveryMaskValue) {
  Random random(9);
  for (std::int32_t mask = TypeParam::kMin; mask <= TypeParam::kMax; ++mask) {
    const auto effect = RandomPixel<TypeParam>(random);
    const auto source = RandomPixel<TypeParam>(random);
    TypeParam expected{};
    for (int c = 0; c < 4; ++c) {
      expected[c] =
          static_cast<ComponentOf<TypeParam>>(model::MaskedComponent(kDepth<TypeParam>, source[c], effect[c], mask));
    }
    ASSERT_EQ(Painter<TypeParam>::shown(effect, source, mask), expected) << mask;
  }
}

TEST(HvDsPaintCombinerAtEightBits, HalfAMask) {
  EXPECT_EQ((Painter<R8>::shown(Make<R8>(200, 100, 10, 20), Make<R8>(100, 200, 20, 10), 128)),
            Make<R8>(150, 150, 15, 15));
}

TEST(HvDsPaintCombinerAtSixteenBits, TheFixedPointOneIsJustOverAHalf) {
  EXPECT_EQ((Painter<R16>::shown(Make<R16>(32767, 16384, -32767, 2), Make<R16>(0, 0, 0, 0), 16384)),
            Make<R16>(16384, 8192, -16384, 1));
}

TEST(HvDsPaintCombinerAtSixteenBits, ANegativeMaskLeadsAwayFromTheEffect) {
  const R16 source = Make<R16>(1000, -1000, 0, 32767);
  EXPECT_EQ((Painter<R16>::shown(Make<R16>(2000, 1000, 5, 32767), source, -1)), source);
  EXPECT_EQ((Painter<R16>::shown(Make<R16>(2000, 1000, 5, 32767), source, -32767)), Make<R16>(0, -3000, -5, 32767));
  // The store keeps the low bits: 32767 + 32767 becomes -2.
  EXPECT_EQ((Painter<R16>::shown(Make<R16>(0, 0, 0, 0), source, -32767)).alpha, -2);
}

// A float mask is an amount: beyond 0..1 it counts as 0 or 1.
TEST(HvDsPaintCombinerInFloats, AMaskIsLimitedToZeroToOne) {
  using FloatPainter = HvDsPaintCombiner<Rf, Rf, Cf, Cf>;
  const Rf effect = MakeFloat(5.0f, 4.0f, -3.0f, 0.5f);
  const Rf source = MakeFloat(1.0f, 2.0f, 1.0f, 1.0f);
  EXPECT_EQ(FloatPainter::shown(effect, source, 0.0f), source);
  EXPECT_EQ(FloatPainter::shown(effect, source, 1.0f), effect);
  EXPECT_EQ(FloatPainter::shown(effect, source, 0.25f), MakeFloat(2.0f, 2.5f, 0.0f, 0.875f));
  EXPECT_EQ(FloatPainter::shown(effect, source, -7.0f), source);
  EXPECT_EQ(FloatPainter::shown(effect, source, 1.5f), effect);
  forRandomCases(2000, [](Random& random) {
    const Rf d = FloatPixel(random, AnyCarried);
    const Rf a = FloatPixel(random, AnyCarried);
    ASSERT_TRUE(LiesBetween(FloatPainter::shown(d, a, AnyCarried(random)), d, a));
  });
}

TEST(HvDsPaintCombinerInFloats, EqualsTheModelForAnyMaskValue) {
  forRandomCases(5000, [](Random& random) {
    const auto any = random.oneIn(3) ? &AnyFinite : &AnyCarried;
    const Rf effect = FloatPixel(random, any);
    const Rf source = FloatPixel(random, any);
    const float mask = random.oneIn(30) ? std::numeric_limits<float>::quiet_NaN() : any(random);
    model::Pixel expected{};
    for (std::size_t c = 0; c < 4; ++c) {
      expected[c] =
          model::MaskedComponent(model::Depth::Float, ModelOf(source)[c], ModelOf(effect)[c], model::BitsOf(mask));
    }
    ASSERT_EQ(ModelOf(HvDsPaintCombiner<Rf, Rf, Cf, Cf>::shown(effect, source, mask)), expected) << mask;
  });
}

TEST(HvDsPaintCombinerInFloats, NothingLiesOutsideOfMaskAndSource) {
  HvTexture<Rf, Rf> source(2, 1);
  Fill(source, MakeFloat(0.25f, 0.5f, 2.0f, 1.0f));
  source.setOutsideColour(MakeFloat(9.0f, 9.0f, 9.0f, 9.0f));
  HvTexture<Rf, Rf> output(4, 1);
  const Rf effect = MakeFloat(-1.0f, 3.0f, 0.0f, 0.5f);
  Fill(output, effect);
  HvTexture<Cf, Cf> mask(3, 1);
  mask.at(0, 0)->value = 0.0f;
  mask.at(1, 0)->value = 1.0f;
  mask.at(2, 0)->value = 0.5f;
  HvDsPaintCombiner<Rf, Rf, Cf, Cf> painter;
  painter.process(&source, &mask, &output);
  EXPECT_EQ(PixelsOf(output), (std::vector<Rf>{*source.at(0, 0), effect, MakeFloat(-0.5f, 1.5f, 0.0f, 0.25f), Rf{}}));
}

TYPED_TEST(HvDsPaintCombinerAtBothDepths, OutsideTheMaskTheSourceStands) {
  using Pixel = TypeParam;
  Random random(12);
  HvTexture<Pixel, Rf> source(5, 4);
  HvTexture<Pixel, Rf> output(5, 4);
  FillRandom(source, random);
  FillRandom(output, random);
  const std::vector<Pixel> effect = PixelsOf(output);
  MaskOf<Pixel> mask(2, 2);
  mask.setOrigin(2, 1);
  for (std::int32_t y = 0; y < 2; ++y) {
    for (std::int32_t x = 0; x < 2; ++x)
      mask.at(x, y)->value = Pixel::kMax;
  }
  Painter<Pixel> painter;
  painter.process(&source, &mask, &output);
  for (std::int32_t y = 0; y < 4; ++y) {
    for (std::int32_t x = 0; x < 5; ++x) {
      const bool masked = x >= 2 && x < 4 && y >= 1 && y < 3;
      EXPECT_EQ(*output.at(x, y), masked ? effect[static_cast<std::size_t>(y * 5 + x)] : *source.at(x, y));
    }
  }
}

TYPED_TEST(HvDsPaintCombinerAtBothDepths, AnAbsentMaskGivesTheSource) {
  using Pixel = TypeParam;
  HvTexture<Pixel, Rf> source(2, 2);
  HvTexture<Pixel, Rf> output(2, 2);
  Fill(source, Make<Pixel>(1, 2, 3, 4));
  Fill(output, Make<Pixel>(9, 9, 9, 9));
  MaskOf<Pixel> absent;
  Painter<Pixel> painter;
  painter.process(&source, &absent, &output);
  for (const Pixel& pixel : PixelsOf(output))
    EXPECT_EQ(pixel, Make<Pixel>(1, 2, 3, 4));
}

TYPED_TEST(HvDsPaintCombinerAtBothDepths, BeyondTheSourceIsZeroAndNotTheCropColour) {
  using Pixel = TypeParam;
  HvTexture<Pixel, Rf> source(1, 1);
  *source.at(0, 0) = Make<Pixel>(50, 50, 50, 50);
  source.setOutsideColour(Make<Pixel>(77, 77, 77, 77));
  HvTexture<Pixel, Rf> output(4, 1);
  Fill(output, Make<Pixel>(100, 100, 100, 100));
  MaskOf<Pixel> mask(3, 1);
  mask.at(0, 0)->value = 0;
  mask.at(1, 0)->value = 0;
  mask.at(2, 0)->value = static_cast<ComponentOf<Pixel>>(Pixel::kMax / 2 + 1);
  Painter<Pixel> painter;
  painter.process(&source, &mask, &output);
  EXPECT_EQ(*output.at(0, 0), Make<Pixel>(50, 50, 50, 50));
  EXPECT_EQ(*output.at(1, 0), Pixel{});
  EXPECT_EQ(*output.at(2, 0), Make<Pixel>(50, 50, 50, 50));
  EXPECT_EQ(*output.at(3, 0), Pixel{});
}

TYPED_TEST(HvDsPaintCombinerAtAllDepths, PlacesAndFieldsEqualTheModel) {
  using Pixel = TypeParam;
  KernelRunsOfCases runs;
  forRandomCases(300, [&](Random& random) {
    HvTexture<Pixel, Rf> source(random.within(1, 9), random.within(1, 9));
    HvTexture<Pixel, Rf> output(random.within(1, 16), random.within(1, 12));
    MaskOf<Pixel> mask(random.within(1, 9), random.within(1, 9));
    FillRandom(source, random);
    FillRandom(output, random);
    FillRandom(mask, random);
    source.setOrigin(random.within(-4, 8), random.within(-4, 8));
    mask.setOrigin(random.within(-4, 8), random.within(-4, 8));
    output.setWriteOrigin(random.within(-4, 4), random.within(0, 4));
    const std::int32_t field = random.within(0, 2);
    const model::Picture before = ModelOf(output);
    model::Picture expected = before;
    const model::Window whole = model::WholeWindow(expected);
    model::ApplyMask(kDepth<Pixel>, ModelOf(source), ModelOf(mask), expected, whole);
    const ThreadCount threads(random.within(1, 8));
    const CpuLevel level(randomCpuLevel(random));
    Painter<Pixel> painter;
    painter.setFieldMode(field);
    painter.process(&source, &mask, &output);
    for (std::int32_t y = 0; y < output.height(); ++y) {
      const bool untouched = field != 0 && (((y + whole.y1) & 1) == 0) != (field == 1);
      for (std::int32_t x = 0; x < output.width(); ++x) {
        const model::Picture& wanted = untouched ? before : expected;
        EXPECT_EQ(ModelOf(*output.at(x, y)), model::Stored(wanted, x, y));
      }
    }
    runs.note();
  });
  if (kDepth<Pixel> != model::Depth::Float) {
    EXPECT_TRUE(runs.had({sizeof(Pixel) == 4 ? "paintRow 8" : "paintRow 16"}));
  }
}

TYPED_TEST(HvDsPaintCombinerAtBothDepths, AsksBeforeEachRow) {
  using Pixel = TypeParam;
  const ThreadCount threads(1);
  HvTexture<Pixel, Rf> source(2, 6);
  HvTexture<Pixel, Rf> output(2, 6);
  Fill(source, Make<Pixel>(5, 5, 5, 5));
  MaskOf<Pixel> mask;
  // The first poll comes before the pass.
  StopAfter stop(3);
  Painter<Pixel> painter;
  painter.interrupt = &stop.record;
  painter.process(&source, &mask, &output);
  EXPECT_EQ(*output.at(0, 1), Make<Pixel>(5, 5, 5, 5));
  EXPECT_EQ(*output.at(0, 2), Pixel{});
}

}  // namespace
}  // namespace vblur::test
