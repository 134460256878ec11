#include "blur/FuzzSampler.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "image/ChannelCopySampler.h"
#include "tests/blur/RandomPictures.h"
#include "tests/blur/SmallBlur.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/StopAfter.h"

namespace vblur::test {
namespace {

using Frame = HvTexture<R8, Ri>;

R8 flatAreaAfter(float radius, std::uint8_t white) {
  Blur8 blur(6, 6);
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  blur.fill(R8{{white, white, white, white}});
  return *blur.run(kFuzzRGBA, radius, radius).at(3, 3);
}

TEST(FuzzSampler, KeepsFlatAreasWhiteAtRadiusOne) {
  EXPECT_EQ(flatAreaAfter(1.0f, 255), (R8{{255, 255, 255, 255}}));
  EXPECT_EQ((3 * 255 * 5461 + 8192) >> 14, 255);
}

TEST(FuzzSampler, LeavesAnAxisWithoutARadiusAsItIs) {
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

// The middle of a flat area of one row, long enough for any radius.
R16 longFlatAreaAfter(float radius, const R16& pixel, std::int32_t mode) {
  Blur16 blur(2800, 1);
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  blur.fill(pixel);
  std::fill_n(blur.result.at(0, 0), 2800, R16{{1, 2, 3, 4}});
  return *blur.run(mode, radius, 0.0f).at(1400, 0);
}

TEST(FuzzSampler, DarkensFlatAreasByTheTruncatedScale) {
  struct {
    float radius;
    int taps;
    int scale;
  } const cases[] = {
      {100.0f, 201, 81}, {1000.0f, 2001, 8}, {4096.0f, 8193, 1}, {8191.0f, 16383, 1}, {8192.0f, 16385, 0}};
  for (const auto& [radius, taps, scale] : cases) {
    const auto darkened = [taps = taps, scale = scale](int value) {
      for (int box = 0; box < 3; ++box)
        value = static_cast<int>((std::int64_t{value} * taps * scale + 8192) >> 14);
      return static_cast<std::int16_t>(value);
    };
    const R16 pixel{{16384, 32767, 5000, -20000}};
    EXPECT_EQ(longFlatAreaAfter(radius, pixel, kFuzzRGBA),
              (R16{{darkened(16384), darkened(32767), darkened(5000), darkened(-20000)}}))
        << radius;
  }
}

TEST(FuzzSampler, TakesEveryFilteredChannelToZeroFromRadius8192On) {
  const R16 white{{32767, 32767, 32767, 32767}};
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    for (const float radius : {8192.0f, 8400.0f, 1e9f}) {
      EXPECT_EQ(longFlatAreaAfter(radius, white, kFuzzRGBA), R16{}) << name << ' ' << radius;
      EXPECT_EQ(longFlatAreaAfter(radius, white, kFuzzRGB), (R16{{0, 0, 0, 32767}})) << name;
      EXPECT_EQ(longFlatAreaAfter(radius, white, kFuzzAlpha), (R16{{32767, 32767, 32767, 0}})) << name;
      EXPECT_EQ(longFlatAreaAfter(radius, white, kFuzzGrey), (R16{{0, 0, 0, 32767}})) << name;
    }
    EXPECT_TRUE(kernelsRanAmongOthers({"copyBits 64", "extractRow 16", "spreadRow 16"})) << name;
  }
}

TEST(FuzzSampler, LosesNothingOfFlatAreasAtRadius8191) {
  const R16 white{{32767, 32767, 32767, 32767}};
  const int once = (32767 * 16383 + 8192) >> 14;
  const int twice = (once * 16383 + 8192) >> 14;
  const auto left = static_cast<std::int16_t>((twice * 16383 + 8192) >> 14);
  EXPECT_EQ(longFlatAreaAfter(8191.0f, white, kFuzzRGBA), (R16{{left, left, left, left}}));
}

// The boxes of radius 1 take an edge from 0 to 200 to 22, 67, 133, 178 and so on.
TEST(FuzzSampler, DarkensTheEdgesOfABrightPictureWithColourAndNotWithRepeat) {
  Blur8 blur(9, 9);
  blur.fill(R8{{200, 200, 200, 200}});
  blur.run(kFuzzRGBA, 1.0f, 1.0f);
  const std::uint8_t expected[] = {126, 170, 193, 200, 200, 200, 193, 170, 126};
  for (int x = 0; x < 9; ++x) {
    const std::uint8_t value = expected[x];
    EXPECT_EQ(*blur.result.at(x, 4), (R8{{value, value, value, value}})) << x;
    EXPECT_EQ(*blur.result.at(4, x), (R8{{value, value, value, value}})) << x;
  }
  blur.source.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  EXPECT_EQ(pixelsOf(blur.run(kFuzzRGBA, 1.0f, 1.0f)), pixelsOf(blur.source));
}

TEST(FuzzSampler, LetsTheOutsideColourFlowIn) {
  Blur8 blur(9, 9);
  blur.source.setOutsideColour(R8{{0, 255, 0, 0}});
  blur.run(kFuzzRGBA, 1.0f, 1.0f);
  EXPECT_EQ(*blur.result.at(0, 0), (R8{{0, 154, 0, 0}}));
  EXPECT_EQ(*blur.result.at(4, 0), (R8{{0, 94, 0, 0}}));
  EXPECT_EQ(*blur.result.at(4, 4), (R8{{0, 0, 0, 0}}));
}

TEST(FuzzSampler, CutsSizesToThreeTimesTheLongerSide) {
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

TEST(FuzzSampler, DividesTheXSizeByTheAspectBeforeTheCut) {
  const auto result = [](float radius, float sizeY, float aspect) {
    Blur8 blur(7, 4);
    blur.fillRandom(8);
    blur.source.setEdgeMethods(kEdgeWrap, kEdgeWrap);
    blur.sampler.setAspect(aspect);
    return pixelsOf(blur.run(kFuzzRGBA, radius, sizeY));
  };
  EXPECT_EQ(result(5.0f, 1.5f, 2.0f), result(2.5f, 1.5f, 1.0f));
  EXPECT_EQ(result(12.0f, 1.5f, 0.5f), result(21.0f, 1.5f, 1.0f));
  EXPECT_EQ(result(42.0f, 1.5f, 2.0f), result(21.0f, 1.5f, 1.0f));
  // The aspect does not divide the y size.
  EXPECT_EQ(result(2.0f, 22.0f, 2.0f), result(1.0f, 21.0f, 1.0f));
  EXPECT_EQ(result(0.5f, 20.0f, 0.5f), result(1.0f, 20.0f, 1.0f));
  EXPECT_NE(result(1.0f, 20.0f, 1.0f), result(1.0f, 21.0f, 1.0f));
}

TEST(FuzzSampler, TakesAnAspectOfNothingOrLessForAThousandth) {
  for (std::int32_t mode = kFuzzRGBA; mode <= kFuzzChroma; ++mode) {
    Blur8 square(16, 3);
    square.fillRandom(8);
    const std::vector<R8> expected = pixelsOf(square.run(mode, 2.0f, 0.5f));
    for (const float aspect : {0.0f, -3.0f, 0.0005f, 0.001f}) {
      Blur8 blur(16, 3);
      blur.fillRandom(8);
      blur.sampler.setAspect(aspect);
      EXPECT_EQ(blur.sampler.aspect, 0.001f);
      EXPECT_EQ(blur.sampler.inverseAspect, 1.0f / 0.001f);
      EXPECT_EQ(pixelsOf(blur.run(mode, 0.002f, 0.5f)), expected) << mode << ' ' << aspect;
    }
  }
}

TEST(FuzzSampler, GivesTheSourceInTheWindowAndItsAlphaEverywhereWithoutASize) {
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

TEST(FuzzSampler, TakesChannelsThatAreNotFilteredFromTheSource) {
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

TEST(FuzzSampler, MakesAPictureWithoutRedBlackGreyWithTheSourcesAlpha) {
  Blur8 blur(6, 6);
  blur.fillRandom(1);
  for (int i = 0; i < 36; ++i)
    (blur.source.at(0, 0) + i)->red = 0;
  blur.run(kFuzzGrey, 2.0f, 2.0f);
  for (int i = 0; i < 36; ++i)
    EXPECT_EQ(blur.result.at(0, 0)[i], (R8{{0, 0, 0, blur.source.at(0, 0)[i].alpha}}));
}

TEST(FuzzSampler, TakesAPictureThroughYuvWithoutARadiusToo) {
  Blur8 blur(2, 2);
  blur.fill(R8{{255, 255, 255, 33}});
  EXPECT_EQ(*blur.run(kFuzzU, 0.0f, 0.0f).at(1, 1), (R8{{251, 254, 250, 33}}));
}

// The result is the source's memory, shifted: the last copy of alpha reads what the conversion back has written.
TEST(FuzzSampler, CopiesAlphaOnceMoreWithinOnePictureThatIsMoved) {
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
    forgetKernelRuns();
    once.sampler.process(&once.source, &within);
    EXPECT_TRUE(kernelsRanAmongOthers({"boxSweep 8"}));

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

// Channels that are not filtered are copied pixel by pixel, in place and shifted.
TEST(FuzzSampler, CopiesChannelsAfterTheFilterWithinOnePictureThatIsMoved) {
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

TEST(FuzzSampler, SeesRealPixelsAroundAWindowInEveryChain) {
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

// The first pixel of a white line whose edges wrap, filtered in a window of one pixel: the boxes read the far end,
// which is white where the plane was filled and 0 elsewhere.
R8 nearEndOf(int length, float radius, std::int32_t mode, bool alongY) {
  Blur8 blur(alongY ? 1 : length, alongY ? length : 1);
  blur.fill(R8{{255, 255, 255, 255}});
  blur.source.setEdgeMethods(kEdgeWrap, kEdgeWrap);
  blur.sampler.setWindow(0, 0, 0, 0);
  return *blur.run(mode, alongY ? 0.0f : radius, alongY ? radius : 0.0f).at(0, 0);
}

// The plane is filled for 3 trunc(radius) + 6 pixels beyond the window.
TEST(FuzzSampler, FillsItsPlanesThreeRadiiAndSixPixelsBeyondTheWindow) {
  for (const std::string& name : HvCpuLevels()) {
    const CpuLevel level(name);
    forgetKernelRuns();
    for (const bool alongY : {false, true}) {
      SCOPED_TRACE(name + (alongY ? " along y" : " along x"));
      for (const float radius : {1.0f, 1.75f}) {
        EXPECT_EQ(nearEndOf(10, radius, kFuzzGrey, alongY), (R8{{255, 255, 255, 255}}));
        EXPECT_EQ(nearEndOf(10, radius, kFuzzLuminance, alongY), (R8{{251, 254, 250, 255}}));
      }
      // One pixel longer, and the pixel beside the window reads 0: 6 of 27 parts, and 15 of 64.
      EXPECT_EQ(nearEndOf(11, 1.0f, kFuzzGrey, alongY), (R8{{198, 198, 198, 255}}));
      EXPECT_EQ(nearEndOf(8, 0.5f, kFuzzGrey, alongY), (R8{{195, 195, 195, 255}}));
      EXPECT_EQ(nearEndOf(11, 1.0f, kFuzzLuminance, alongY), (R8{{137, 139, 136, 255}}));
    }
    EXPECT_TRUE(kernelsRanAmongOthers({"boxSweep 8", "extractRow 8", "rgbRow 8", "spreadRow 8", "yuvRow 8"})) << name;
  }
}

TEST(FuzzSampler, FiltersNothingInModesOutOfRange) {
  for (const std::int32_t mode : {-1, 11, 100}) {
    Blur8 blur(4, 4);
    blur.fillRandom(2);
    EXPECT_EQ(pixelsOf(blur.run(mode, 1.0f, 1.0f)), std::vector<R8>(16));
  }
}

TEST(FuzzSampler, RunsAllChildrenOnTheCallingThreadWithOneThread) {
  const ThreadCount threads(3);
  for (std::int32_t mode = kFuzzRGBA; mode <= kFuzzChroma; ++mode) {
    const auto run = [&](bool alone) {
      struct Caller {
        std::thread::id id = std::this_thread::get_id();
        std::atomic<int> others{0};
      } caller;
      Blur8 blur(90, 90);
      blur.fillRandom(5);
      blur.record.arm(&caller, [](void* context, HvStateWord*) -> std::int32_t {
        auto* const self = static_cast<Caller*>(context);
        self->others += std::this_thread::get_id() == self->id ? 0 : 1;
        return 0;
      });
      if (alone) blur.sampler.flags |= Imager::kOneThread;
      blur.run(mode, 1.5f, 1.5f, kFuzzSharpen);
      EXPECT_EQ(caller.others > 0, !alone) << mode;
      return pixelsOf(blur.result);
    };
    EXPECT_EQ(run(true), run(false)) << mode;
  }
}

class FuzzSamplerWithoutMemory : public ::testing::TestWithParam<std::pair<float, float>> {};

TEST_P(FuzzSamplerWithoutMemory, LeavesTheTargetAloneAndReportsIt) {
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

// A row, the intermediate and a column of negative length.
INSTANTIATE_TEST_SUITE_P(OfALineBelowZero, FuzzSamplerWithoutMemory,
                         ::testing::Values(std::pair{-50.0f, 1.0f}, std::pair{1.0f, -50.0f}, std::pair{-50.0f, -50.0f},
                                           std::pair{-2000.0f, 0.0f}));

// Larger than any memory; at 16 bits the count of bytes exceeds 64 bits.
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

TEST(FuzzSampler, StopsTheFrameForAPlaneTooLargeForAnybody) {
  stopsForAPlaneTooLarge<R8>();
  stopsForAPlaneTooLarge<R16>();
}

TEST(FuzzSampler, LeavesTheResultAsItWasWhenStoppedBeforeAYuvPictureComesBack) {
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
    // Rows are finished or untouched; all are untouched until the first conversion and the filter are done, which poll
    // at least once for each pass and each row or column.
    EXPECT_TRUE(std::equal(after.begin(), after.begin() + static_cast<std::ptrdiff_t>(rows), last.begin()));
    EXPECT_TRUE(std::all_of(after.begin() + static_cast<std::ptrdiff_t>(rows), after.end(),
                            [](const R8& pixel) { return pixel == R8{}; }));
    EXPECT_TRUE(polls >= 6 + 3 + 10 || rows == 0) << polls;
  }
}

}  // namespace
}  // namespace vblur::test
