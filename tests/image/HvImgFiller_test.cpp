#include "image/HvImgFiller.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Canvas.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

// The filler one pixel at a time: three bands, each of at least one row.
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
  KernelRunsOfCases runs;
  forRandomCases(400, [&](Random& random) {
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
      runs.note();
      EXPECT_EQ(canvas.pixels(), expected) << name;
      EXPECT_TRUE(canvas.guardsAreIntact()) << name;
    }
    EXPECT_EQ((std::vector{filler.x1, filler.y1, filler.x2, filler.y2}), (std::vector{x1, y1, x2, y2}));
  });
  EXPECT_TRUE(runs.had({"fillWords"}));
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

// Fills inside and outside, with a colour and with zero.
template <class Body>
void forAllFillers(const Body& body) {
  for (const bool outside : {false, true}) {
    for (const bool zero : {false, true}) {
      HvImgFiller<R8, Rf> filler;
      filler.fillOutside = outside;
      filler.colourIsZero = zero;
      filler.colour = R8{{1, 2, 3, 4}};
      body(filler);
    }
  }
}

TEST(HvImgFiller, LeavesAllAsItIsInAWindowWithoutRowsOrColumns) {
  for (const std::vector<std::int32_t>& window : {std::vector{5, 2, 4, 7}, {2, 5, 7, 4}, {5, 5, 4, 4}, {7, 7, 2, 2}}) {
    forAllFillers([&](HvImgFiller<R8, Rf>& filler) {
      Canvas<R8> canvas(10, 10);
      canvas.fill(R8{{9, 9, 9, 9}});
      HvTexture<R8, Rf> out;
      canvas.wrapIn(out);
      // A crop of all but the picture's border.
      filler.left = filler.bottom = 1;
      filler.right = filler.top = 9;
      filler.setWindow(window[0], window[1], window[2], window[3]);
      filler.process(&out);
      EXPECT_EQ(canvas.pixels(), std::vector<R8>(100, R8{{9, 9, 9, 9}}));
      EXPECT_TRUE(canvas.guardsAreIntact());
    });
  }
}

TEST(HvImgFiller, LeavesATargetWithoutMemoryAlone) {
  forAllFillers([](HvImgFiller<R8, Rf>& filler) {
    HvTexture<R8, Rf> hollow;
    hollow.wrap(8, 8, nullptr);
    filler.process(&hollow);
    EXPECT_EQ(hollow.data, nullptr);
  });
}

}  // namespace
}  // namespace vblur::test
