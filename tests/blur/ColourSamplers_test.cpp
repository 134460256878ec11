#include <gtest/gtest.h>

#include "blur/ChannelExtractor.h"
#include "blur/ColourConversion.h"
#include "blur/GreyToRGBSampler.h"
#include "blur/RGBToYUVSampler.h"
#include "blur/SubtractCombiner.h"
#include "blur/YUVToRGBSampler.h"
#include "tests/blur/RandomPictures.h"
#include "tests/model/colour_pictures.h"
#include "tests/model/sharpen.h"
#include "tests/support/ModelBridge.h"
#include "tests/support/StopAfter.h"

namespace vblur::test {
namespace {

using YuvPicture = HvTexture<Ri, Ri>;
using GreyPicture = HvTexture<int, int>;
template <class Pixel>
using NarrowGreyPicture = std::conditional_t<std::is_same_v<Pixel, R8>, HvTexture<C8, Ci>, HvTexture<C16, Ci>>;

template <class Pixel>
constexpr std::int32_t kFull = Pixel::kMax;

template <class Pixel>
using FrameOf = HvTexture<Pixel, Ri>;
template <class Pixel>
using Forward = RGBToYUVSampler<FrameOf<Pixel>, YuvPicture, Pixel, Ri, kFull<Pixel>>;
template <class Pixel>
using Backward = YUVToRGBSampler<YuvPicture, FrameOf<Pixel>, Ri, Pixel, kFull<Pixel>>;
template <class Pixel>
using Extractor = ChannelExtractor<FrameOf<Pixel>, GreyPicture, Pixel, int, 0>;
template <class Pixel>
using Spreader = GreyToRGBSampler<GreyPicture, FrameOf<Pixel>, int, Pixel, kFull<Pixel>>;

// The same into and out of planes of the pixels' own depth.
template <class Pixel>
using NarrowForward = RGBToYUVSampler<FrameOf<Pixel>, FrameOf<Pixel>, Pixel, Ri, kFull<Pixel>>;
template <class Pixel>
using NarrowBackward = YUVToRGBSampler<FrameOf<Pixel>, FrameOf<Pixel>, Pixel, Pixel, kFull<Pixel>>;
template <class Pixel>
using NarrowExtractor =
    ChannelExtractor<FrameOf<Pixel>, NarrowGreyPicture<Pixel>, Pixel, typename NarrowGreyPicture<Pixel>::Pixel, 0>;
template <class Pixel>
using NarrowSpreader = GreyToRGBSampler<NarrowGreyPicture<Pixel>, FrameOf<Pixel>,
                                        typename NarrowGreyPicture<Pixel>::Pixel, Pixel, kFull<Pixel>>;

// Stored values that pixels make, and a few beyond.
template <class Pixel>
ComponentRange<Pixel> heldRange() {
  return {-4000, 40000};
}

template <class Pixel>
ComponentRange<Pixel> rangeOf() {
  if constexpr (sizeof(ComponentOf<Pixel>) == 4) {
    return heldRange<Pixel>();
  } else {
    return storageRange<Pixel>();
  }
}

// Runs a processor and the model's stage on the same pictures; convert(input, output, window).
template <class Processor, class InTexture, class OutTexture, class Convert>
void compareSampler(Random& random, const Convert& convert) {
  using In = typename InTexture::Pixel;
  using Out = typename OutTexture::Pixel;
  const int widest = random.oneIn(4) ? 90 : 12;
  RandomPicture<In, typename InTexture::Accum> input(random, randomSize(random, widest), randomSize(random, 12),
                                                     rangeOf<In>());
  RandomPicture<Out, typename OutTexture::Accum> output(random, random.within(1, widest), random.within(1, 12),
                                                        rangeOf<Out>());
  const auto window = randomWindow(random, output.texture);
  model::Picture expected = modelPicture(output.texture);
  convert(modelPicture(input.texture), expected, model::Settle(window, expected));
  Processor processor;
  setWindow(processor, window);
  const ThreadCount scope(randomThreadCount(random));
  const CpuLevel level(randomCpuLevel(random));
  processor.process(&input.texture, &output.texture);
  EXPECT_TRUE(equalsModel(output.texture, expected));
  EXPECT_EQ(modelPixel(output.texture.outsideColour), expected.outside);
  EXPECT_TRUE(output.canvas.guardsAreIntact());
}

template <class Pixel>
class ColourSamplers : public ::testing::Test {
 protected:
  static constexpr model::Depth kDepth = modelDepth<Pixel>();
};
using Depths = ::testing::Types<R8, R16>;
TYPED_TEST_SUITE(ColourSamplers, Depths);

TYPED_TEST(ColourSamplers, GoToYuvAsTheModelDoes) {
  const auto convert = [](const model::Picture& in, model::Picture& out, const model::Window& window) {
    model::RgbToYuv(in, out, modelDepth<TypeParam>(), window);
  };
  forRandomCases(300, [&](Random& random) {
    compareSampler<Forward<TypeParam>, FrameOf<TypeParam>, YuvPicture>(random, convert);
    // Not every V of 16 bits fits them.
    if constexpr (std::is_same_v<TypeParam, R8>) {
      compareSampler<NarrowForward<TypeParam>, FrameOf<TypeParam>, FrameOf<TypeParam>>(random, convert);
    }
  });
}

TYPED_TEST(ColourSamplers, ComeBackFromYuvAsTheModelDoes) {
  const auto convert = [](const model::Picture& in, model::Picture& out, const model::Window& window) {
    model::YuvToRgb(in, out, modelDepth<TypeParam>(), window);
  };
  forRandomCases(300, [&](Random& random) {
    compareSampler<Backward<TypeParam>, YuvPicture, FrameOf<TypeParam>>(random, convert);
    compareSampler<NarrowBackward<TypeParam>, FrameOf<TypeParam>, FrameOf<TypeParam>>(random, convert);
  });
}

TYPED_TEST(ColourSamplers, TakeRedForGreyAsTheModelDoes) {
  forRandomCases(200, [](Random& random) {
    compareSampler<Extractor<TypeParam>, FrameOf<TypeParam>, GreyPicture>(random, model::ExtractRed);
    compareSampler<NarrowExtractor<TypeParam>, FrameOf<TypeParam>, NarrowGreyPicture<TypeParam>>(random,
                                                                                                 model::ExtractRed);
  });
}

TYPED_TEST(ColourSamplers, SpreadGreyAsTheModelDoes) {
  const auto spread = [](const model::Picture& in, model::Picture& out, const model::Window& window) {
    model::GreyToRgb(in, out, modelDepth<TypeParam>(), window);
  };
  forRandomCases(200, [&](Random& random) {
    compareSampler<Spreader<TypeParam>, GreyPicture, FrameOf<TypeParam>>(random, spread);
    compareSampler<NarrowSpreader<TypeParam>, NarrowGreyPicture<TypeParam>, FrameOf<TypeParam>>(random, spread);
  });
}

TYPED_TEST(ColourSamplers, SubtractAsTheModelDoes) {
  using Combiner = SubtractCombiner<TypeParam, Ri, kFull<TypeParam>>;
  forRandomCases(300, [](Random& random) {
    RandomPicture<TypeParam, Ri> a(random, randomSize(random, 12), randomSize(random, 12));
    RandomPicture<TypeParam, Ri> b(random, randomSize(random, 12), randomSize(random, 12));
    RandomPicture<TypeParam, Ri> output(random, random.within(1, 12), random.within(1, 12));
    const auto window = randomWindow(random, output.texture);
    model::Picture expected = modelPicture(output.texture);
    const model::Window settled = model::Settle(window, expected);
    const model::Picture first = modelPicture(a.texture);
    const model::Picture second = modelPicture(b.texture);
    for (int y = settled.y1; y <= settled.y2; ++y) {
      for (int x = settled.x1; x <= settled.x2; ++x) {
        for (std::size_t c = 0; c < 4; ++c) {
          model::Target(expected, x, y)[c] =
              model::Reflected(model::At(first, x, y)[c], model::At(second, x, y)[c], modelDepth<TypeParam>());
        }
      }
    }
    Combiner combiner;
    setWindow(combiner, window);
    const ThreadCount scope(randomThreadCount(random));
    const CpuLevel level(randomCpuLevel(random));
    combiner.process(&a.texture, &b.texture, &output.texture);
    EXPECT_TRUE(equalsModel(output.texture, expected));
  });
}

R8 throughYuv(const R8& pixel) {
  return Backward<R8>::converted(Forward<R8>::converted(pixel));
}

TEST(Yuv, HoldsWhiteAsItsUpperHalf) {
  EXPECT_EQ(yuvFromRgb(255, 255, 255), (YuvInt{254, 0, 0}));
  EXPECT_EQ(Forward<R8>::converted(R8{{255, 255, 255, 9}}), (Ri{{254, 127, 127, 9}}));
  EXPECT_EQ(yuvFromHeld<255>(254), 253);
  EXPECT_EQ(yuvFromHeld<255>(127), -1);
}

TEST(Yuv, GivesWhiteBackALittleGreen) {
  EXPECT_EQ(throughYuv(R8{{255, 255, 255, 77}}), (R8{{251, 254, 250, 77}}));
  EXPECT_EQ(throughYuv(R8{{128, 128, 128, 0}}), (R8{{125, 127, 124, 0}}));
  EXPECT_EQ(throughYuv(R8{{255, 0, 0, 1}}), (R8{{251, 0, 0, 1}}));
  EXPECT_EQ(throughYuv(R8{{0, 0, 0, 2}}), (R8{{0, 0, 0, 2}}));
}

TEST(Yuv, LosesAStepOfEvenValuesAndNoneOfOddOnes) {
  for (int value = -255; value <= 255; ++value)
    EXPECT_EQ(yuvFromHeld<255>(heldYuv<255>(value)), value % 2 == 0 && value != -255 ? value - 1 : value) << value;
  for (int value = -32767; value <= 32767; ++value)
    ASSERT_EQ(yuvFromHeld<32767>(heldYuv<32767>(value)), value % 2 == 0 ? value - 1 : value) << value;
}

TEST(Yuv, HoldsNegativeDifferencesFromZeroUp) {
  EXPECT_EQ(heldYuv<255>(-1), 127);
  EXPECT_EQ(yuvFromHeld<255>(127), -1);
  EXPECT_EQ(heldYuv<255>(-255), 0);
  EXPECT_EQ(heldYuv<255>(255), 255);
}

// The planes of 8 bits hold every colour.
TEST(Yuv, OfEightBitsFitsEightBits) {
  for (int red = 0; red < 256; red += kShareOfCases) {
    bool allFit = true;
    for (int green = 0; green < 256; ++green) {
      for (int blue = 0; blue < 256; ++blue) {
        const R8 pixel{
            {static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green), static_cast<std::uint8_t>(blue), 255}};
        allFit = allFit && fits<R8>(heldYuvOf<255>(pixel));
      }
    }
    ASSERT_TRUE(allFit) << red;
  }
}

// Each held value grows or falls with each component, so the ends of the range tell.
TEST(Yuv, OfSixteenBitsFitsSixteenBitsButForVBelowZero) {
  const auto held = [](int red, int green, int blue) {
    return heldYuvOf<32767>(
        R16{{static_cast<std::int16_t>(red), static_cast<std::int16_t>(green), static_cast<std::int16_t>(blue), 0}});
  };
  EXPECT_EQ(held(-32768, -32768, -32768).red, 3);
  EXPECT_EQ(held(32767, 32767, 32767).red, 32763);
  EXPECT_EQ(held(32767, 32767, -32768).green, 2087);
  EXPECT_EQ(held(-32768, -32768, 32767).green, 30679);
  EXPECT_EQ(held(-32768, 32767, 32767).blue, -3760);
  EXPECT_EQ(held(32767, -32768, -32768).blue, 36527);
  EXPECT_EQ(held(32767, 0, 0).blue, 26455);
  EXPECT_TRUE(fits<R16>(held(32767, 0, 0)));
  EXPECT_TRUE(fits<R16>(held(-32768, 32767, 32767)));
  EXPECT_FALSE(fits<R16>(held(32767, -32768, -32768)));
  EXPECT_TRUE(fits<Ri>(held(32767, -32768, -32768)));
}

template <class Out>
bool fitInto(const R16& inside, const R16& outside) {
  HvTexture<R16, Ri> in(3, 2);
  std::fill_n(in.at(0, 0), 6, R16{{1, 2, 3, 4}});
  *in.at(2, 1) = inside;
  in.setOutsideColour(outside);
  HvTexture<Out, Ri> out(3, 2);
  RGBToYUVSampler<HvTexture<R16, Ri>, HvTexture<Out, Ri>, R16, Ri, 32767> sampler;
  sampler.process(&in, &out);
  return sampler.allFit();
}

TEST(Yuv, TellsWhenAPictureOrWhatLiesBeyondItDoesNotFit) {
  const R16 good{{100, 200, 300, 0}};
  const R16 bad{{32767, -32768, -32768, 0}};
  EXPECT_TRUE(fitInto<R16>(good, good));
  EXPECT_FALSE(fitInto<R16>(bad, good));
  EXPECT_FALSE(fitInto<R16>(good, bad));
  EXPECT_TRUE(fitInto<Ri>(bad, bad));
}

TEST(Yuv, TellsOfThePictureOfTheLastRunOnly) {
  HvTexture<R16, Ri> in(1, 1);
  *in.at(0, 0) = R16{{32767, -32768, -32768, 0}};
  HvTexture<R16, Ri> out(1, 1);
  NarrowForward<R16> sampler;
  sampler.process(&in, &out);
  EXPECT_FALSE(sampler.allFit());
  *in.at(0, 0) = R16{};
  sampler.process(&in, &out);
  EXPECT_TRUE(sampler.allFit());
}

TEST(Yuv, KeepsTheSignOfNegativeSums) {
  EXPECT_EQ(yuvFromRgb(-1, 0, 0), (YuvInt{-1, 0, -1}));
  EXPECT_EQ(yuvFromRgb(-20000, 0, 0), (YuvInt{-5977, 2944, -12295}));
}

TEST(Yuv, KeepsGreyGrey) {
  for (int grey = -32768; grey <= 32767; ++grey) {
    const YuvInt yuv = yuvFromRgb(grey, grey, grey);
    ASSERT_EQ(yuv, (YuvInt{(4095 * grey) >> 12, 0, 0})) << grey;
  }
}

TEST(Yuv, HasAMatrixWhoseRowsSumToAlmostOneAndNothing) {
  const YuvInt sums = yuvFromRgb(4096, 4096, 4096);
  EXPECT_EQ(sums, (YuvInt{4095, 0, 0}));
}

TEST(Yuv, WritesNoAlphaOfItsOwn) {
  R8 pixel{{1, 2, 3, 200}};
  rgbFromYuv(pixel, {128.0f, 0.0f, 0.0f}, 0.0f, 255.0f);
  EXPECT_EQ(pixel, (R8{{128, 128, 128, 0}}));
}

TEST(Yuv, LimitsWhatComesBackToTheBoundsOfTheCaller) {
  R16 pixel{};
  rgbFromYuv(pixel, {-500.0f, 0.0f, 0.0f}, 0.0f, 32767.0f);
  EXPECT_EQ(pixel, R16{});
  rgbFromYuv(pixel, {40000.0f, 0.0f, 0.0f}, 0.0f, 32767.0f);
  EXPECT_EQ(pixel, (R16{{32767, 32767, 32767, 0}}));
}

TEST(YuvInFloats, WeighsWithTheDecimalFractions) {
  const YuvFloat yuv = yuvFromRgb(100.0f, 50.0f, 25.0f);
  EXPECT_EQ(yuv.y, 100.0f * 0.2989f + 50.0f * 0.5866f + 25.0f * 0.1144f);
  EXPECT_EQ(yuv.u, 25.0f * 0.4364f - (50.0f * 0.2891f + 100.0f * 0.1473f));
  EXPECT_EQ(yuv.v, 100.0f * 0.6149f - 50.0f * 0.5145f - 25.0f * 0.1004f);
}

// One grey pixel and the outside grey beside it, spread with the two flags.
std::pair<R8, R8> spread(int grey, int outside, bool threshold, bool opaque) {
  Canvas<int> canvas(1, 1);
  canvas.at(0, 0) = grey;
  GreyPicture picture;
  canvas.wrapIn(picture);
  picture.setOutsideColour(outside);
  Canvas<R8> result(2, 1);
  FrameOf<R8> frame;
  result.wrapIn(frame);
  Spreader<R8> spreader;
  spreader.threshold = threshold;
  spreader.opaque = opaque;
  spreader.process(&picture, &frame);
  return {result.at(0, 0), result.at(1, 0)};
}

TEST(GreyToRGBSampler, SpreadsGreyOverAllComponentsByItsLowBits) {
  EXPECT_EQ(spread(7, 9, false, false), (std::pair{R8{{7, 7, 7, 7}}, R8{{9, 9, 9, 9}}}));
  EXPECT_EQ(spread(257, -1, false, false), (std::pair{R8{{1, 1, 1, 1}}, R8{{255, 255, 255, 255}}}));
}

TEST(GreyToRGBSampler, MakesAlphaOpaqueBeyondTheInputToo) {
  EXPECT_EQ(spread(7, 9, false, true), (std::pair{R8{{7, 7, 7, 255}}, R8{{9, 9, 9, 255}}}));
}

TEST(GreyToRGBSampler, CutsAtZeroButNotBeyondTheInput) {
  EXPECT_EQ(spread(7, 9, true, false), (std::pair{R8{{255, 255, 255, 255}}, R8{{9, 9, 9, 9}}}));
  EXPECT_EQ(spread(0, 9, true, false), (std::pair{R8{{0, 0, 0, 0}}, R8{{9, 9, 9, 9}}}));
  EXPECT_EQ(spread(0, 9, true, true), (std::pair{R8{{0, 0, 0, 255}}, R8{{9, 9, 9, 255}}}));
  EXPECT_EQ(spread(-3, 9, true, true), (std::pair{R8{{255, 255, 255, 255}}, R8{{9, 9, 9, 255}}}));
}

// The rows of a picture of three that are written when the record says stop at the second question; the first one
// is that of the pass.
template <class Processor, class Out, class... In>
int rowsBeforeAStop(HvTexture<In, Ri>&... in) {
  const ThreadCount threads(1);
  Out out(2, 3);
  StopAfter stop(1);
  Processor processor;
  processor.interrupt = &stop.record;
  processor.process(&in..., &out);
  EXPECT_EQ(stop.asked(), 2);
  int rows = 0;
  while (rows < 3 && *out.at(0, rows) != typename Out::Pixel{})
    ++rows;
  return rows;
}

TEST(RowPolls, StandAfterTheRowsOfOneComponent) {
  FrameOf<R8> colours(2, 3);
  std::fill_n(colours.at(0, 0), 6, R8{{7, 7, 7, 7}});
  EXPECT_EQ((rowsBeforeAStop<Extractor<R8>, GreyPicture>(colours)), 1);
  const ThreadCount threads(1);
  StopAfter stop(1);
  GreyPicture grey(2, 3);
  std::fill_n(grey.at(0, 0), 6, 7);
  FrameOf<R8> spread(2, 3);
  Spreader<R8> spreader;
  spreader.interrupt = &stop.record;
  spreader.process(&grey, &spread);
  EXPECT_EQ(*spread.at(1, 0), (R8{{7, 7, 7, 7}}));
  EXPECT_EQ(*spread.at(0, 1), R8{});
}

TEST(RowPolls, StandBeforeTheRowsOfColours) {
  FrameOf<R8> colours(2, 3);
  std::fill_n(colours.at(0, 0), 6, R8{{7, 7, 7, 7}});
  EXPECT_EQ((rowsBeforeAStop<Forward<R8>, YuvPicture>(colours)), 0);
  YuvPicture yuv(2, 3);
  std::fill_n(yuv.at(0, 0), 6, Ri{{200, 200, 200, 200}});
  EXPECT_EQ((rowsBeforeAStop<Backward<R8>, FrameOf<R8>>(yuv)), 0);
  EXPECT_EQ((rowsBeforeAStop<SubtractCombiner<R8, Ri, 255>, FrameOf<R8>>(colours, colours)), 0);
}

TEST(SubtractCombiner, ReflectsAndLimitsToTheType) {
  using Eight = SubtractCombiner<R8, Ri, 255>;
  using Sixteen = SubtractCombiner<R16, Ri, 32767>;
  EXPECT_EQ(Eight::reflected(200, 100), 255);
  EXPECT_EQ(Eight::reflected(50, 100), 0);
  EXPECT_EQ(Eight::reflected(100, 90), 110);
  EXPECT_EQ(Sixteen::reflected(20000, 10000), 30000);
  EXPECT_EQ(Sixteen::reflected(20000, -8000), 32767);
  EXPECT_EQ(Sixteen::reflected(-20000, 8000), -32768);
  for (int a = -32768; a <= 32767; a += 13)
    ASSERT_EQ(Sixteen::reflected(a, a), a);
}

}  // namespace
}  // namespace vblur::test
