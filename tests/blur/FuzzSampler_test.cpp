#include "blur/FuzzSampler.h"

#include <gtest/gtest.h>

#include "image/ChannelCopySampler.h"
#include "tests/blur/RandomPictures.h"
#include "tests/support/StopAfter.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Ri>;
using DeepFrame = HvTexture<R16, Ri>;

template <class Pixel, std::int32_t Max>
struct Blur {
  using Texture = HvTexture<Pixel, Ri>;

  Blur(int width, int height) : source(width, height), result(width, height) {}

  // Blurs by one radius on both axes and gives the result.
  Texture& run(std::int32_t mode, float sizeX, float sizeY, std::int32_t method = kFuzzBlur) {
    sampler.mode = mode;
    sampler.method = method;
    sampler.sizeX = sizeX;
    sampler.sizeY = sizeY;
    sampler.interrupt = &record;
    sampler.process(&source, &result);
    return result;
  }
  void fill(const Pixel& pixel) { std::fill_n(source.at(0, 0), source.width() * source.height(), pixel); }
  void fillRandom(std::uint64_t seed) {
    Random random(seed);
    for (int i = 0; i < source.width() * source.height(); ++i)
      *(source.at(0, 0) + i) = randomPixel(random, storageRange<Pixel>());
  }

  Texture source;
  Texture result;
  HvInterruptRecord record;
  FuzzSampler<Pixel, Ri, Max> sampler;
};

using Blur8 = Blur<R8, 255>;
using Blur16 = Blur<R16, 32767>;

std::vector<R8> pixelsOf(const Frame& frame) {
  return {frame.at(0, 0), frame.at(0, 0) + frame.width() * frame.height()};
}

R8 flatAreaAfter(float radius, std::uint8_t white) {
  Blur8 blur(6, 6);
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  blur.fill(R8{{white, white, white, white}});
  return *blur.run(kFuzzRGBA, radius, radius).at(3, 3);
}

TEST(FlatAreas, StayWhiteAtRadiusOne) {
  EXPECT_EQ(flatAreaAfter(1.0f, 255), (R8{{255, 255, 255, 255}}));
  EXPECT_EQ((3 * 255 * 5461 + 8192) >> 14, 255);
}

TEST(FlatAreas, StayWhiteWithoutARadiusOnOneAxis) {
  Blur8 blur(5, 5);
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  blur.fillRandom(4);
  // Only x is filtered, so a picture of equal columns stays.
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 5; ++x)
      *blur.source.at(x, y) = *blur.source.at(0, y);
  }
  EXPECT_EQ(pixelsOf(blur.run(kFuzzRGBA, 1.0f, 0.0f)), pixelsOf(blur.source));
}

// A flat area of one row, long enough for any radius.
std::int16_t longFlatAreaAfter(float radius, std::int16_t value) {
  Blur16 blur(2800, 1);
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  blur.fill(R16{{value, value, value, value}});
  return blur.run(kFuzzAlpha, radius, 0.0f).at(1400, 0)->alpha;
}

TEST(FlatAreas, DarkenByTheTruncatedScale) {
  struct {
    float radius;
    int taps;
    int scale;
  } const cases[] = {
      {100.0f, 201, 81}, {1000.0f, 2001, 8}, {4096.0f, 8193, 1}, {8191.0f, 16383, 1}, {8192.0f, 16385, 0}};
  for (const auto& [radius, taps, scale] : cases) {
    int expected = 16384;
    for (int box = 0; box < 3; ++box)
      expected = (expected * taps * scale + 8192) >> 14;
    EXPECT_EQ(longFlatAreaAfter(radius, 16384), expected) << radius;
  }
  EXPECT_EQ(longFlatAreaAfter(8192.0f, 32767), 0);
}

TEST(Edges, DarkenABrightPictureWithColourAndNotWithRepeat) {
  Blur8 blur(9, 9);
  blur.fill(R8{{200, 200, 200, 200}});
  const R8 dark = *blur.run(kFuzzRGBA, 1.0f, 1.0f).at(0, 4);
  EXPECT_EQ(*blur.result.at(4, 4), (R8{{200, 200, 200, 200}}));
  EXPECT_LT(dark.red, 150);
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  EXPECT_EQ(*blur.run(kFuzzRGBA, 1.0f, 1.0f).at(0, 4), (R8{{200, 200, 200, 200}}));
}

TEST(Edges, LetTheOutsideColourFlowIn) {
  Blur8 blur(9, 9);
  blur.source.setOutsideColour(R8{{0, 255, 0, 0}});
  const R8 corner = *blur.run(kFuzzRGBA, 1.0f, 1.0f).at(0, 0);
  EXPECT_EQ(corner.red, 0);
  EXPECT_GT(corner.green, 100);
}

TEST(Sizes, BeyondThreeTimesTheLongerSideAreCut) {
  for (const bool along_y : {false, true}) {
    const auto result = [&](float radius) {
      Blur8 blur(7, 4);
      blur.fillRandom(8);
      blur.source.setEdgeMethods(kEdgeWrap, kEdgeReflect);
      return pixelsOf(blur.run(kFuzzRGBA, along_y ? 1.0f : radius, along_y ? radius : 1.0f));
    };
    EXPECT_EQ(result(21.5f), result(21.0f));
    EXPECT_EQ(result(1e30f), result(21.0f));
    EXPECT_NE(result(20.0f), result(21.0f));
  }
}

TEST(Sizes, AlongXAreDividedByTheAspectBeforeTheCut) {
  const auto result = [](float radius, float aspect) {
    Blur8 blur(7, 4);
    blur.fillRandom(8);
    blur.source.setEdgeMethods(kEdgeWrap, kEdgeWrap);
    blur.sampler.setAspect(aspect);
    return pixelsOf(blur.run(kFuzzRGBA, radius, 1.5f));
  };
  EXPECT_EQ(result(5.0f, 2.0f), result(2.5f, 1.0f));
  EXPECT_EQ(result(12.0f, 0.5f), result(21.0f, 1.0f));
  EXPECT_EQ(result(42.0f, 2.0f), result(21.0f, 1.0f));
}

TEST(Sizes, TakeAnAspectOfNothingOrLessForAThousandth) {
  FuzzSampler<R8, Ri, 255> sampler;
  for (const float aspect : {0.0f, -3.0f, 0.0005f}) {
    sampler.setAspect(aspect);
    EXPECT_EQ(sampler.aspect, 0.001f);
    EXPECT_EQ(sampler.inverseAspect, 1.0f / 0.001f);
  }
}

TEST(SizesOfNothing, GiveTheSourceInTheWindowAndItsAlphaEverywhere) {
  Blur8 blur(8, 8);
  blur.fillRandom(3);
  blur.sampler.setWindow(2, 3, 4, 5);
  blur.run(kFuzzRGB, 0.0f, 0.0f);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 8; ++x) {
      const R8 from = *blur.source.at(x, y);
      const bool inside = x >= 2 && x <= 4 && y >= 3 && y <= 5;
      EXPECT_EQ(*blur.result.at(x, y), inside ? from : (R8{{0, 0, 0, from.alpha}}));
    }
  }
}

TEST(Channels, ThatAreNotFilteredAreTheSources) {
  struct {
    std::int32_t mode;
    bool filtered[4];
  } const cases[] = {{kFuzzAlpha, {false, false, false, true}}, {kFuzzRGB, {true, true, true, false}},
                     {kFuzzRed, {true, false, false, false}},   {kFuzzGreen, {false, true, false, false}},
                     {kFuzzBlue, {false, false, true, false}},  {kFuzzGrey, {true, true, true, false}}};
  for (const auto& [mode, filtered] : cases) {
    Blur8 blur(9, 9);
    blur.fillRandom(6);
    blur.run(mode, 1.5f, 1.5f);
    for (int c = 0; c < 4; ++c) {
      bool same = true;
      for (int i = 0; i < 81; ++i)
        same = same && (blur.source.at(0, 0) + i)->operator[](c) == (blur.result.at(0, 0) + i)->operator[](c);
      EXPECT_EQ(same, !filtered[c]) << "mode " << mode << " component " << c;
    }
  }
}

TEST(Grey, OfAPictureWithoutRedIsBlackWithTheSourcesAlpha) {
  Blur8 blur(6, 6);
  blur.fillRandom(1);
  for (int i = 0; i < 36; ++i)
    (blur.source.at(0, 0) + i)->red = 0;
  blur.run(kFuzzGrey, 2.0f, 2.0f);
  for (int i = 0; i < 36; ++i)
    EXPECT_EQ(blur.result.at(0, 0)[i], (R8{{0, 0, 0, blur.source.at(0, 0)[i].alpha}}));
}

TEST(Yuv, OfNoRadiusIsARoundTripAndNoCopy) {
  Blur8 blur(2, 2);
  blur.fill(R8{{255, 255, 255, 33}});
  EXPECT_EQ(*blur.run(kFuzzU, 0.0f, 0.0f).at(1, 1), (R8{{251, 254, 250, 33}}));
}

// A result that lies in the source's own memory, beside it: the last copy of alpha reads what the way back has
// written.
TEST(Yuv, WithinOnePictureThatIsMovedCopiesAlphaOnceMore) {
  for (const int apart : {-1, 0, 1, 3}) {
    Blur8 once(9, 7);
    once.fillRandom(4);
    const std::vector<R8> pixels = pixelsOf(once.source);
    Blur8 apartFrom(9, 7);
    std::copy(pixels.begin(), pixels.end(), apartFrom.source.at(0, 0));
    for (Blur8* blur : {&once, &apartFrom}) {
      blur->source.setEdgeMethods(kEdgeReflect, kEdgeReflect);
      blur->source.setOrigin(apart, 0);
    }
    Frame within;
    within.wrap(9, 7, once.source.data);
    once.sampler.mode = kFuzzLuminance;
    once.sampler.sizeX = once.sampler.sizeY = 1.5f;
    once.sampler.process(&once.source, &within);

    apartFrom.run(kFuzzLuminance, 1.5f, 1.5f);
    Frame moved;
    moved.wrap(9, 7, apartFrom.result.data);
    moved.setEdgeMethods(kEdgeReflect, kEdgeReflect);
    moved.setOrigin(apart, 0);
    ChannelCopySampler<R8, Ri, 0, 0, 0, 1> alpha;
    alpha.process(&moved, &apartFrom.result);
    EXPECT_EQ(pixelsOf(within), pixelsOf(apartFrom.result)) << apart;
  }
}

// The channels beside the filtered one move along their rows as a copy of them does, pixel after pixel.
TEST(Channels, WithinOnePictureThatIsMovedAreCopiedAfterTheFilter) {
  for (const int apart : {-3, -1, 0, 1, 2}) {
    Blur8 once(40, 3);
    once.fillRandom(4);
    Blur8 apartFrom(40, 3);
    Blur8 moved(40, 3);
    for (Blur8* blur : {&once, &apartFrom, &moved}) {
      std::copy_n(once.source.at(0, 0), 120, blur->source.at(0, 0));
      blur->source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
      blur->source.setOrigin(apart, 0);
    }
    const auto inItself = [](Blur8& blur, Frame& frame) { frame.wrap(40, 3, blur.source.data); };
    Frame within;
    inItself(once, within);
    once.sampler.mode = kFuzzRed;
    once.sampler.sizeX = once.sampler.sizeY = 1.5f;
    once.sampler.process(&once.source, &within);

    apartFrom.run(kFuzzRed, 1.5f, 1.5f);
    Frame others;
    inItself(moved, others);
    const CpuLevel level("twin");
    ChannelCopySampler<R8, Ri, 0, 1, 1, 1> copy;
    copy.process(&moved.source, &others);
    std::vector<R8> expected = pixelsOf(others);
    for (std::size_t i = 0; i < expected.size(); ++i)
      expected[i].red = apartFrom.result.at(0, 0)[i].red;
    EXPECT_EQ(pixelsOf(within), expected) << apart;
  }
}

TEST(Windows, SeeRealPixelsAroundThemInEveryChain) {
  for (std::int32_t mode = kFuzzRGBA; mode <= kFuzzChroma; ++mode) {
    Blur8 whole(30, 30);
    whole.fillRandom(5);
    whole.run(mode, 2.5f, 1.75f);
    Blur8 part(30, 30);
    part.fillRandom(5);
    part.sampler.setWindow(12, 13, 16, 15);
    part.run(mode, 2.5f, 1.75f);
    for (int y = 13; y <= 15; ++y) {
      for (int x = 12; x <= 16; ++x)
        EXPECT_EQ(*part.result.at(x, y), *whole.result.at(x, y)) << "mode " << mode << " at " << x << ", " << y;
    }
  }
}

TEST(Modes, OutOfRangeFilterNothing) {
  for (const std::int32_t mode : {-1, 11, 100}) {
    Blur8 blur(4, 4);
    blur.fillRandom(2);
    EXPECT_EQ(pixelsOf(blur.run(mode, 1.0f, 1.0f)), std::vector<R8>(16));
  }
}

TEST(Sharpen, OfNoRadiusIsTheSource) {
  Blur8 blur(7, 7);
  blur.fillRandom(9);
  EXPECT_EQ(pixelsOf(blur.run(kFuzzRGBA, 0.0f, 0.0f, kFuzzSharpen)), pixelsOf(blur.source));
}

TEST(Sharpen, OfColoursLetsAlphaThrough) {
  Blur8 blur(7, 7);
  blur.fillRandom(9);
  blur.run(kFuzzRGB, 2.0f, 2.0f, kFuzzSharpen);
  for (int i = 0; i < 49; ++i)
    EXPECT_EQ((blur.result.at(0, 0) + i)->alpha, (blur.source.at(0, 0) + i)->alpha);
}

TEST(Sharpen, OfYuvDoublesTheRoundingOfTheTrip) {
  Blur8 blur(2, 2);
  blur.fill(R8{{128, 128, 128, 7}});
  EXPECT_EQ(*blur.run(kFuzzU, 0.0f, 0.0f, kFuzzSharpen).at(0, 0), (R8{{131, 129, 132, 7}}));
}

TEST(Sharpen, PutsTheOriginOfTheResultBackWithoutItsFraction) {
  Blur8 blur(4, 4);
  blur.result.setOrigin(3.75f, -2.5f);
  blur.run(kFuzzRGBA, 1.0f, 1.0f, kFuzzSharpen);
  EXPECT_EQ(blur.result.horizontal.originF, 3.0f);
  EXPECT_EQ(blur.result.vertical.originF, -2.0f);
}

class WithoutMemory : public ::testing::TestWithParam<std::pair<float, float>> {};

TEST_P(WithoutMemory, LeavesTheTargetAloneAndSaysSo) {
  for (std::int32_t mode = kFuzzRGBA; mode <= kFuzzChroma; ++mode) {
    for (const std::int32_t threads : {1, 3}) {
      const ThreadCount scope(threads);
      Blur8 blur(6, 5);
      blur.fillRandom(7);
      std::fill_n(blur.result.at(0, 0), 30, R8{{1, 2, 3, 4}});
      blur.run(mode, GetParam().first, GetParam().second, kFuzzSharpen);
      EXPECT_EQ(pixelsOf(blur.result), std::vector<R8>(30, R8{{1, 2, 3, 4}})) << mode;
      EXPECT_EQ(blur.record.interrupted, 1);
      EXPECT_EQ(blur.record.state, 1000);
      EXPECT_EQ(blur.record.memoryRefused, 0);
    }
  }
}

// A row, the picture between the passes, and a column of less than nothing.
INSTANTIATE_TEST_SUITE_P(OfALineBelowZero, WithoutMemory,
                         ::testing::Values(std::pair{-50.0f, 1.0f}, std::pair{1.0f, -50.0f}, std::pair{-50.0f, -50.0f},
                                           std::pair{-2000.0f, 0.0f}));

// Colours have a picture between the passes, which is too wide and too high here for any machine, and at 16
// bits for a count of bytes.
template <class Pixel>
void stopsForAPlaneTooLarge() {
  using Picture = HvTexture<Pixel, Ri>;
  Pixel pixel{{9, 9, 9, 9}};
  Picture target;
  target.wrap(1, 1, &pixel);
  target.horizontal.size = 2000000000;
  target.vertical.size = 2000000000;
  Picture source(1, 1);
  for (const std::int32_t mode : {kFuzzRGBA, kFuzzGrey, kFuzzLuminance}) {
    FuzzSampler<Pixel, Ri, Pixel::kMax> sampler;
    HvInterruptRecord record;
    sampler.interrupt = &record;
    sampler.mode = mode;
    sampler.sizeX = sampler.sizeY = 1.0f;
    sampler.process(&source, &target);
    EXPECT_EQ(record.interrupted, 1) << mode;
    EXPECT_EQ(record.state, 1000);
    EXPECT_EQ(record.memoryRefused, 1);
    EXPECT_EQ(pixel, (Pixel{{9, 9, 9, 9}}));
  }
}

TEST(WithoutMemory, APlaneTooLargeForAnybodyStopsTheFrame) {
  stopsForAPlaneTooLarge<R8>();
  stopsForAPlaneTooLarge<R16>();
}

TEST(Stops, BeforeAYuvPictureComesBackLeaveTheResultAsItWas) {
  const ThreadCount scope(1);
  Blur8 finished(5, 5);
  finished.fillRandom(3);
  const std::vector<R8> last = pixelsOf(finished.run(kFuzzLuminance, 1.0f, 1.0f));
  bool stopped = true;
  for (std::int32_t polls = 0; stopped; ++polls) {
    ASSERT_LT(polls, 1000);
    Blur8 blur(5, 5);
    blur.fillRandom(3);
    StopAfter stop(polls);
    blur.sampler.mode = kFuzzLuminance;
    blur.sampler.sizeX = blur.sampler.sizeY = 1.0f;
    blur.sampler.interrupt = &stop.record;
    blur.sampler.process(&blur.source, &blur.result);
    stopped = stop.record.interrupted != 0;
    EXPECT_TRUE(!stopped || stop.asked() == polls + 1);
    const std::vector<R8> after = pixelsOf(blur.result);
    std::size_t rows = 0;
    while (rows < 25 && after[rows] != R8{})
      rows += 5;
    // Whole rows of the last picture, and then nothing; and nothing at all before the way there and
    // the filter are done, which is at least one poll for each pass and each row or column.
    EXPECT_TRUE(std::equal(after.begin(), after.begin() + static_cast<std::ptrdiff_t>(rows), last.begin()));
    EXPECT_TRUE(std::all_of(after.begin() + static_cast<std::ptrdiff_t>(rows), after.end(),
                            [](const R8& pixel) { return pixel == R8{}; }));
    EXPECT_TRUE(polls >= 6 + 3 + 10 || rows == 0) << polls;
  }
}

}  // namespace
}  // namespace vblur::test
