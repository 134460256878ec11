#include <gtest/gtest.h>

#include "blur/ChannelExtractor.h"
#include "blur/GreyToRGBSampler.h"
#include "blur/RGBToYUVSampler.h"
#include "blur/SubtractCombiner.h"
#include "blur/YUVToRGBSampler.h"
#include "tests/blur/RandomPictures.h"
#include "tests/model/colour_pictures.h"
#include "tests/model/sharpen.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ModelBridge.h"
#include "tests/support/StopAfter.h"
#include "tests/support/TypeNames.h"

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

// With planes of the depth of the pixels.
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

// The values of stored YUV, and some beyond.
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
  forgetKernelRuns();
  processor.process(&input.texture, &output.texture);
  EXPECT_TRUE(ranAtThisLevel(takeKernelRuns()));
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
TYPED_TEST_SUITE(ColourSamplers, Depths, TypeNames);

TYPED_TEST(ColourSamplers, GoToYuvAsTheModelDoes) {
  const auto convert = [](const model::Picture& in, model::Picture& out, const model::Window& window) {
    model::RgbToYuv(in, out, modelDepth<TypeParam>(), window);
  };
  forRandomCases(300, [&](Random& random) {
    compareSampler<Forward<TypeParam>, FrameOf<TypeParam>, YuvPicture>(random, convert);
    // Not every V of a 16-bit picture fits 16 bits.
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
    forgetKernelRuns();
    combiner.process(&a.texture, &b.texture, &output.texture);
    EXPECT_TRUE(ranAtThisLevel(takeKernelRuns()));
    EXPECT_TRUE(equalsModel(output.texture, expected));
  });
}

// The rows of three that are written when the second poll stops. The first poll is that of the pass.
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

TEST(ColourSamplersRowPolls, AreAfterTheRowsOfOneComponent) {
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

TEST(ColourSamplersRowPolls, AreBeforeTheRowsOfColours) {
  FrameOf<R8> colours(2, 3);
  std::fill_n(colours.at(0, 0), 6, R8{{7, 7, 7, 7}});
  EXPECT_EQ((rowsBeforeAStop<Forward<R8>, YuvPicture>(colours)), 0);
  YuvPicture yuv(2, 3);
  std::fill_n(yuv.at(0, 0), 6, Ri{{200, 200, 200, 200}});
  EXPECT_EQ((rowsBeforeAStop<Backward<R8>, FrameOf<R8>>(yuv)), 0);
  EXPECT_EQ((rowsBeforeAStop<SubtractCombiner<R8, Ri, 255>, FrameOf<R8>>(colours, colours)), 0);
}

}  // namespace
}  // namespace vblur::test
