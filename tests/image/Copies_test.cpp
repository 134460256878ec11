#include <gtest/gtest.h>

#include "image/ChannelCopySampler.h"
#include "image/HvImgFiller.h"
#include "image/HvRGBCopySampler.h"
#include "image/SimpleCopySampler.h"
#include "tests/support/Canvas.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

// What a copy of chosen channels makes of a target, one pixel at a time.
template <class Texture>
std::vector<typename Texture::Pixel> plainCopy(const Texture& in, const Texture& out, int channels) {
  std::vector<typename Texture::Pixel> result;
  for (int y = 0; y < out.height(); ++y) {
    for (int x = 0; x < out.width(); ++x) {
      const std::int32_t column = in.horizontal.mapIndex(x + out.horizontal.writeOrigin - in.horizontal.originI);
      const std::int32_t row = in.vertical.mapIndex(y + out.vertical.writeOrigin - in.vertical.originI);
      const bool outside = column == kOutside || row == kOutside;
      const typename Texture::Pixel from = outside ? in.outsideColour : *in.at(column, row);
      typename Texture::Pixel to = *out.at(x, y);
      for (int c = 0; c < PixelTraits<typename Texture::Pixel>::kComponents; ++c) {
        if ((channels >> c & 1) != 0) setComponent(to, c, componentOf(from, c));
      }
      result.push_back(to);
    }
  }
  return result;
}

template <class Sampler, class Prepare>
void compareCopy(int channels, const Prepare& prepare) {
  using Texture = typename Sampler::Texture;
  using Pixel = typename Texture::Pixel;
  forRandomCases(60, [&](Random& random) {
    const bool wide = random.oneIn(3);
    Canvas<Pixel> from(random.within(1, wide ? 70 : 9), random.within(1, 9), randomLayout(random));
    Canvas<Pixel> to(random.within(1, wide ? 150 : 15), random.within(1, 15), randomLayout(random));
    from.fillRandom(random);
    to.fillRandom(random);
    Texture in;
    Texture out;
    from.wrapIn(in);
    to.wrapIn(out);
    setRandomSurroundings(random, in, storageRange<Pixel>());
    setRandomSurroundings(random, out, storageRange<Pixel>());
    out.setWriteOrigin(random.within(-9, 9), random.within(-9, 9));
    const auto expected = plainCopy(in, out, channels);
    const Canvas<Pixel> before = to;
    for (const std::string& name : HvCpuLevels()) {
      const CpuLevel level(name);
      const ThreadCount scope(random.within(1, 3));
      to.copyFrom(before);
      Sampler sampler;
      prepare(sampler);
      sampler.process(&in, &out);
      EXPECT_EQ(to.pixels(), expected) << name;
      EXPECT_TRUE(to.guardsAreIntact()) << name;
    }
  });
}

const auto kNothing = [](auto&) {};

TEST(SimpleCopySampler, CopiesTheInfinitePlane) {
  compareCopy<SimpleCopySampler<R8, Rf>>(15, kNothing);
  compareCopy<SimpleCopySampler<R16, Ri>>(15, kNothing);
  compareCopy<SimpleCopySampler<Ri, Ri>>(15, kNothing);
  compareCopy<SimpleCopySampler<int, int>>(15, kNothing);
}

TEST(ChannelCopySampler, CopiesTheChannelsOfEachMask) {
  compareCopy<ChannelCopySampler<R8, Ri, 0, 0, 0, 1>>(8, kNothing);
  compareCopy<ChannelCopySampler<R8, Ri, 1, 1, 1, 0>>(7, kNothing);
  compareCopy<ChannelCopySampler<R8, Ri, 0, 1, 1, 1>>(14, kNothing);
  compareCopy<ChannelCopySampler<R8, Ri, 1, 0, 1, 1>>(13, kNothing);
  compareCopy<ChannelCopySampler<R8, Ri, 1, 1, 0, 1>>(11, kNothing);
  compareCopy<ChannelCopySampler<R16, Ri, 0, 0, 0, 1>>(8, kNothing);
  compareCopy<ChannelCopySampler<R16, Ri, 1, 1, 1, 0>>(7, kNothing);
  compareCopy<ChannelCopySampler<R16, Ri, 0, 1, 1, 1>>(14, kNothing);
  compareCopy<ChannelCopySampler<R16, Ri, 1, 0, 1, 1>>(13, kNothing);
  compareCopy<ChannelCopySampler<R16, Ri, 1, 1, 0, 1>>(11, kNothing);
}

TEST(HvRGBCopySampler, CopiesEachChoiceOfChannels) {
  EXPECT_EQ((HvRGBCopySampler<R8, Rf>().channels), 15);
  for (int channels = 0; channels <= 15; ++channels) {
    const auto choose = [&](auto& sampler) { sampler.channels = channels; };
    compareCopy<HvRGBCopySampler<R8, Rf>>(channels, choose);
    compareCopy<HvRGBCopySampler<R16, Rf>>(channels, choose);
  }
}

TEST(HvRGBCopySampler, WritesNoAlphaWithSeven) {
  HvTexture<R8, Rf> in(3, 3);
  HvTexture<R8, Rf> out(3, 3);
  std::fill_n(in.at(0, 0), 9, R8{{10, 20, 30, 40}});
  std::fill_n(out.at(0, 0), 9, R8{{1, 2, 3, 4}});
  HvRGBCopySampler<R8, Rf> copy;
  copy.channels = 7;
  copy.process(&in, &out);
  for (int i = 0; i < 9; ++i)
    EXPECT_EQ(out.at(0, 0)[i], (R8{{10, 20, 30, 4}}));
}

TEST(SimpleCopySampler, TilesASmallBoxOverTheTarget) {
  HvTexture<R8, Rf> in(4, 4);
  for (int i = 0; i < 16; ++i)
    in.at(0, 0)[i].red = static_cast<std::uint8_t>(i);
  in.setBounds(1, 2, 1, 3);
  in.setEdgeMethods(kEdgeWrap, kEdgeWrap);
  HvTexture<R8, Rf> out(9, 8);
  SimpleCopySampler<R8, Rf> copy;
  copy.process(&in, &out);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 9; ++x)
      EXPECT_EQ(out.at(x, y)->red, (1 + (y + 2) % 3) * 4 + 1 + (x + 1) % 2) << x << ", " << y;
  }
}

TEST(SimpleLineCopier, CopiesOneRunAndMovesOn) {
  HvTexture<R8, Rf> in(4, 1);
  for (int i = 0; i < 4; ++i)
    in.at(i, 0)->red = static_cast<std::uint8_t>(i + 1);
  in.setBounds(1, 2, 0, 0);
  in.setEdgeMethods(kEdgeReflect, kEdgeColour);
  in.setOutsideColour(R8{{9, 9, 9, 9}});
  R8 row[8] = {};
  R8* to = row;
  using Copier = SimpleLineCopier<R8, Rf>;
  EXPECT_EQ(Copier::copyRun(to, in, 1, 0, 8), 2);
  EXPECT_EQ(Copier::copyRun(to, in, 3, 0, 8), 2);
  EXPECT_EQ(Copier::copyRun(to, in, 3, 0, 4), 1);
  EXPECT_EQ(Copier::copyRun(to, in, 1, 1, 8), 2);
  EXPECT_EQ(to, row + 7);
  const int expected[] = {2, 3, 3, 2, 3, 9, 9, 0};
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(row[i].red, expected[i]) << i;
}

TEST(ChannelCopySampler, LeavesColoursAloneBeyondTheInputTooAndTakesTheOutsideAlpha) {
  HvTexture<R8, Ri> in(2, 2);
  std::fill_n(in.at(0, 0), 4, R8{{50, 60, 70, 80}});
  in.setOutsideColour(R8{{5, 6, 7, 8}});
  HvTexture<R8, Ri> out(4, 4);
  std::fill_n(out.at(0, 0), 16, R8{{1, 2, 3, 4}});
  ChannelCopySampler<R8, Ri, 0, 0, 0, 1> copy;
  copy.process(&in, &out);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) {
      const std::uint8_t alpha = x < 2 && y < 2 ? 80 : 8;
      EXPECT_EQ(*out.at(x, y), (R8{{1, 2, 3, alpha}}));
    }
  }
}

// The filler one pixel at a time, with the three bands of rows that are never empty.
template <class Pixel>
std::vector<Pixel> plainFill(const HvTexture<Pixel, Rf>& out, const HvImgFiller<Pixel, Rf>& filler, std::int32_t x1,
                             std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  const auto inBand = [&](std::int32_t y, std::int32_t first, std::int32_t last) {
    return y >= std::clamp(first, y1, y2 - 1) && y <= std::clamp(last, y1, y2 - 1);
  };
  const Pixel colour = filler.colourIsZero ? Pixel{} : filler.colour;
  std::vector<Pixel> result;
  for (int row = 0; row < out.height(); ++row) {
    for (int column = 0; column < out.width(); ++column) {
      const std::int32_t x = column + out.horizontal.writeOrigin;
      const std::int32_t y = row + out.vertical.writeOrigin;
      bool fills = x >= x1 && x < x2 && y >= y1 && y < y2;
      if (fills && filler.fillOutside) {
        const bool beside = x < std::clamp(filler.left, x1, x2) || x >= std::clamp(filler.right, x1, x2);
        fills = inBand(y, y1, filler.bottom - 1) || inBand(y, filler.top, y2 - 1) ||
                (beside && inBand(y, filler.bottom, filler.top - 1));
      }
      result.push_back(fills ? colour : *out.at(column, row));
    }
  }
  return result;
}

template <class Pixel>
void compareFill() {
  forRandomCases(400, [](Random& random) {
    const bool wide = random.oneIn(3);
    Canvas<Pixel> canvas(random.within(1, wide ? 120 : 14), random.within(1, 14), randomLayout(random));
    canvas.fillRandom(random);
    HvTexture<Pixel, Rf> out;
    canvas.wrapIn(out);
    const int ox = random.within(-9, 9);
    const int oy = random.within(-9, 9);
    out.setWriteOrigin(ox, oy);
    HvImgFiller<Pixel, Rf> filler;
    filler.fillOutside = !random.oneIn(4);
    filler.colourIsZero = random.oneIn(2);
    filler.colour = randomPixel(random, storageRange<Pixel>());
    filler.left = ox + random.within(-3, canvas.width() + 2);
    filler.right = ox + random.within(-3, canvas.width() + 2);
    filler.bottom = oy + random.within(-3, 16);
    filler.top = oy + random.within(-3, 16);
    std::int32_t x1 = ox, y1 = oy, x2 = ox + canvas.width(), y2 = oy + canvas.height();
    if (random.oneIn(2)) {
      x1 = random.within(x1, x2 - 1);
      y1 = random.within(y1, y2 - 1);
      x2 = random.within(x1 + 1, x2);
      y2 = random.within(y1 + 1, y2);
      filler.setWindow(x1, y1, x2 - 1, y2 - 1);
    }
    const auto expected = plainFill(out, filler, x1, y1, x2, y2);
    const Canvas<Pixel> before = canvas;
    for (const std::string& name : HvCpuLevels()) {
      const CpuLevel level(name);
      const ThreadCount scope(random.within(1, 3));
      canvas.copyFrom(before);
      filler.process(&out);
      EXPECT_EQ(canvas.pixels(), expected) << name;
      EXPECT_TRUE(canvas.guardsAreIntact()) << name;
    }
    EXPECT_EQ((std::vector{filler.x1, filler.y1, filler.x2, filler.y2}), (std::vector{x1, y1, x2, y2}));
  });
}

TEST(HvImgFiller, FillsWhatAPlainFillDoes) {
  compareFill<R8>();
  compareFill<R16>();
}

TEST(HvImgFiller, OutsideTheWholeWindowFillsItsFirstAndLastRow) {
  HvTexture<R8, Rf> out(8, 6);
  HvImgFiller<R8, Rf> filler;
  filler.fillOutside = true;
  filler.colourIsZero = false;
  filler.colour = R8{{1, 2, 3, 4}};
  filler.right = 8;
  filler.top = 6;
  filler.process(&out);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 8; ++x)
      EXPECT_EQ(*out.at(x, y), y == 0 || y == 5 ? filler.colour : R8{}) << x << ", " << y;
  }
}

TEST(HvImgFiller, OutsideASquareLeavesTheSquare) {
  HvTexture<R8, Rf> out(100, 100);
  std::fill_n(out.at(0, 0), 10000, R8{{9, 9, 9, 9}});
  HvImgFiller<R8, Rf> filler;
  filler.fillOutside = true;
  filler.left = filler.bottom = 10;
  filler.right = filler.top = 20;
  filler.process(&out);
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) {
      const bool inside = x >= 10 && x < 20 && y >= 10 && y < 20;
      ASSERT_EQ(*out.at(x, y), inside ? (R8{{9, 9, 9, 9}}) : R8{}) << x << ", " << y;
    }
  }
}

TEST(HvImgFiller, InsideTakesAZeroColourForZeroAndOutsideTheMarkAlone) {
  HvTexture<R8, Rf> out(4, 4);
  HvImgFiller<R8, Rf> filler;
  EXPECT_TRUE(filler.colourIsZero);
  filler.colour = R8{{7, 7, 7, 7}};
  std::fill_n(out.at(0, 0), 16, R8{{9, 9, 9, 9}});
  filler.process(&out);
  EXPECT_EQ(*out.at(2, 2), R8{});
  EXPECT_EQ(filler.passes, 1);
}

}  // namespace
}  // namespace vblur::test
