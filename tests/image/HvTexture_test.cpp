#include "image/HvTexture.h"

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/Canvas.h"
#include "tests/support/VirtualSlot.h"

namespace vblur {
namespace {

using test::Canvas;
using test::Random;
using Frame = HvTexture<R8, Rf>;
using FilterFrame = HvTexture<R8, Ri>;

void expectEmpty(const Frame& texture) {
  EXPECT_EQ(texture.data, nullptr);
  EXPECT_EQ(texture.width(), 0);
  EXPECT_EQ(texture.height(), 0);
  EXPECT_EQ(texture.stride, 0);
  EXPECT_FALSE(texture.hasPixels());
}

void expectSameAxis(const HvTexAxis& a, const HvTexAxis& b) {
  EXPECT_EQ(a.size, b.size);
  EXPECT_EQ(a.originF, b.originF);
  EXPECT_EQ(a.originI, b.originI);
  EXPECT_EQ(a.edgeMethod, b.edgeMethod);
  EXPECT_EQ(a.lo, b.lo);
  EXPECT_EQ(a.hi, b.hi);
  EXPECT_EQ(a.count, b.count);
  EXPECT_EQ(a.writeOrigin, b.writeOrigin);
}

// Sets each field to a value other than its default.
void decorate(Frame& texture) {
  texture.setBounds(1, 3, 0, 2);
  texture.setEdgeMethods(kEdgeReflect, kEdgeWrap);
  texture.setOrigin(4.25f, -3.5f);
  texture.setWriteOrigin(9, -8);
  texture.setOutsideColour(R8{{9, 8, 7, 6}});
}

TEST(HvTexture, StartsEmpty) {
  const Frame texture;
  expectEmpty(texture);
  EXPECT_EQ(texture.owned, 0);
  EXPECT_EQ(texture.outsideColour, R8{});
}

TEST(HvTexture, OfASizeOwnsZeroedMemory) {
  const Frame texture(7, 5);
  EXPECT_EQ(texture.owned, 1);
  EXPECT_EQ(texture.allocationFailed, 0);
  EXPECT_EQ(texture.stride, 28);
  EXPECT_EQ(texture.horizontal.hi, 6);
  EXPECT_EQ(texture.vertical.hi, 4);
  ASSERT_TRUE(texture.hasPixels());
  EXPECT_TRUE(std::all_of(texture.at(0, 0), texture.at(0, 0) + 35, [](const R8& pixel) { return pixel == R8{}; }));
}

TEST(HvTexture, AllocatesZeroedMemoryAgain) {
  Frame texture(64, 64);
  std::fill_n(texture.at(0, 0), 64 * 64, R8{{1, 2, 3, 4}});
  texture.allocate();
  EXPECT_TRUE(std::all_of(texture.at(0, 0), texture.at(0, 0) + 64 * 64, [](const R8& pixel) { return pixel == R8{}; }));
}

TEST(HvTexture, WithoutRowsOrColumnsHasNoPixelsAndDoesNotFail) {
  for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {0, 0}}) {
    const Frame texture(width, height);
    EXPECT_EQ(texture.data, nullptr);
    EXPECT_EQ(texture.owned, 1);
    EXPECT_EQ(texture.allocationFailed, 0);
    EXPECT_FALSE(texture.hasPixels());
  }
}

TEST(HvTexture, RecordsThatThereIsNoMemory) {
  const int most = std::numeric_limits<std::int32_t>::max();
  for (const auto& [width, height] : {std::pair{most, most}, {-1, 5}, {5, -1}, {-3, -3}}) {
    Frame texture(width, height);
    EXPECT_EQ(texture.data, nullptr) << width << " x " << height;
    EXPECT_EQ(texture.allocationFailed, 1);
    EXPECT_FALSE(texture.hasPixels());
    texture.horizontal.setSize(2);
    texture.vertical.setSize(2);
    texture.allocate();
    EXPECT_EQ(texture.allocationFailed, 0);
    EXPECT_TRUE(texture.hasPixels());
  }
}

TEST(HvTexture, WrapsMemoryOfSomebodyElse) {
  R8 pixels[6] = {};
  Frame texture(9, 9);
  decorate(texture);
  texture.wrap(3, 2, pixels);
  EXPECT_EQ(texture.owned, 0);
  EXPECT_EQ(texture.at(0, 0), pixels);
  EXPECT_EQ(texture.at(2, 1), pixels + 5);
  EXPECT_EQ(texture.stride, 12);
  EXPECT_EQ(texture.horizontal.lo, 0);
  EXPECT_EQ(texture.horizontal.hi, 2);
  EXPECT_EQ(texture.vertical.count, 2);
  EXPECT_EQ(texture.horizontal.edgeMethod, kEdgeReflect);
}

TEST(HvTexture, ReleasesToNothing) {
  R8 pixels[4] = {};
  Frame view;
  view.wrap(2, 2, pixels);
  view.release();
  expectEmpty(view);
  EXPECT_EQ(view.owned, 0);
  Frame owner(2, 2);
  owner.release();
  expectEmpty(owner);
  EXPECT_EQ(owner.owned, 1);
  EXPECT_EQ(owner.horizontal.lo, -1);
  EXPECT_EQ(owner.horizontal.hi, -1);
  EXPECT_EQ(owner.vertical.count, 1);
  owner.release();
  expectEmpty(owner);
}

TEST(HvTexture, RefersToAnotherWithAllThatItIs) {
  Frame owner(6, 4);
  decorate(owner);
  Frame view(3, 3);
  view.referTo(owner);
  EXPECT_EQ(view.owned, 0);
  EXPECT_EQ(view.data, owner.data);
  EXPECT_EQ(view.stride, owner.stride);
  EXPECT_EQ(view.outsideColour, owner.outsideColour);
  expectSameAxis(view.horizontal, owner.horizontal);
  expectSameAxis(view.vertical, owner.vertical);
}

TEST(HvTexture, DoesNotReferToItself) {
  Frame owner(6, 4);
  const std::byte* data = owner.data;
  owner.referTo(owner);
  EXPECT_EQ(owner.owned, 1);
  EXPECT_EQ(owner.data, data);
}

TEST(HvTexture, SharesItsPixelsWithAnotherAccumulator) {
  Frame owner(6, 4);
  decorate(owner);
  FilterFrame view;
  view.share(owner);
  EXPECT_EQ(view.data, owner.data);
  EXPECT_EQ(view.owned, 0);
  EXPECT_EQ(view.outsideColour, owner.outsideColour);
  expectSameAxis(view.horizontal, owner.horizontal);
  expectSameAxis(view.vertical, owner.vertical);
}

TEST(HvTexture, SharesNothingTwice) {
  Frame owner(6, 4);
  FilterFrame view;
  view.share(owner);
  decorate(owner);
  view.share(owner);
  EXPECT_EQ(view.horizontal.edgeMethod, kEdgeColour);
  EXPECT_EQ(view.outsideColour, R8{});
}

TEST(HvTexture, WithoutPixelsSharesNothing) {
  Frame absent;
  absent.setEdgeMethods(kEdgeRepeat, kEdgeWrap);
  absent.setOutsideColour(R8{{1, 2, 3, 4}});
  FilterFrame view;
  view.share(absent);
  EXPECT_EQ(view.horizontal.edgeMethod, kEdgeColour);
  EXPECT_EQ(view.outsideColour, R8{});
}

TEST(HvTexture, ClonesAShapeIntoMemoryOfItsOwn) {
  Frame model(6, 4);
  decorate(model);
  std::fill_n(model.at(0, 0), 24, R8{{1, 1, 1, 1}});
  HvTexture<R16, Ri> clone(2, 2);
  clone.setOutsideColour(R16{{1, 1, 1, 1}});
  clone.cloneShape(model);
  EXPECT_EQ(clone.owned, 1);
  EXPECT_EQ(clone.stride, 48);
  EXPECT_EQ(clone.outsideColour, R16{});
  expectSameAxis(clone.horizontal, model.horizontal);
  expectSameAxis(clone.vertical, model.vertical);
  ASSERT_TRUE(clone.hasPixels());
  EXPECT_EQ(*clone.at(5, 3), R16{});
}

TEST(HvTexture, DoesNotCloneItself) {
  Frame owner(6, 4);
  *owner.at(2, 2) = R8{{5, 5, 5, 5}};
  owner.cloneShape(owner);
  EXPECT_EQ(*owner.at(2, 2), (R8{{5, 5, 5, 5}}));
}

TEST(HvTexture, NeverFreesMemoryThatItWraps) {
  R8 pixels[16] = {};
  for (int i = 0; i < 4; ++i) {
    Frame texture(3, 3);
    texture.wrap(4, 4, pixels);
    if (i == 1) texture.release();
    if (i == 2) texture.referTo(Frame(2, 2));
    if (i == 3) texture.allocate();
  }
  pixels[15].red = 1;
  EXPECT_EQ(pixels[15].red, 1);
}

TEST(HvTexture, ReadsRowsOfABottomUpPictureFromTheBottom) {
  Random random(3);
  Canvas<R8> canvas(5, 4, {.guard = 2, .rowsApart = 1, .bottomUp = true});
  canvas.fillRandom(random);
  Frame texture;
  canvas.wrapIn(texture);
  EXPECT_LT(texture.stride, 0);
  Frame view;
  view.referTo(texture);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 5; ++x) {
      EXPECT_EQ(*texture.at(x, y), canvas.at(x, y));
      EXPECT_EQ(view.at(x, y), texture.at(x, y));
    }
  }
}

TEST(HvTexture, ReadsEverySecondLineOfAField) {
  R8 pixels[12] = {};
  for (int i = 0; i < 12; ++i)
    pixels[i].red = static_cast<std::uint8_t>(i);
  Frame second;
  second.wrap(2, 3, pixels + 2);
  second.stride *= 2;
  EXPECT_EQ(second.at(1, 0)->red, 3);
  EXPECT_EQ(second.at(0, 1)->red, 6);
  EXPECT_EQ(second.at(1, 2)->red, 11);
}

TEST(HvTexture, ReadsTheOutsideColourWhereEitherAxisIsOutside) {
  Frame texture(4, 4);
  texture.setOutsideColour(R8{{1, 2, 3, 4}});
  texture.setEdgeMethods(kEdgeRepeat, kEdgeColour);
  const auto above = texture.readRun(2, 4);
  EXPECT_FALSE(above.exists);
  EXPECT_EQ(above.first, &texture.outsideColour);
  EXPECT_EQ(above.step, 0);
  EXPECT_EQ(above.length, 2);
  texture.setEdgeMethods(kEdgeColour, kEdgeRepeat);
  const auto left = texture.readRun(-3, 2);
  EXPECT_FALSE(left.exists);
  EXPECT_EQ(left.length, 3);
  EXPECT_TRUE(texture.readRun(0, 9).exists);
}

TEST(HvTexture, TakesTheOriginOffBothCoordinatesOfARead) {
  Frame texture(4, 4);
  texture.setOrigin(10, 20);
  const auto run = texture.readRun(12, 23);
  EXPECT_EQ(run.first, texture.at(2, 3));
  EXPECT_EQ(run.length, 2);
  EXPECT_EQ(run.step, 1);
}

TEST(HvTexture, WritesByItsWriteOriginAlone) {
  Frame texture(4, 4);
  texture.setOrigin(1, 1);
  texture.setBounds(2, 3, 2, 3);
  texture.setWriteOrigin(-7, 30);
  EXPECT_EQ(texture.target(-7, 30), texture.at(0, 0));
  EXPECT_EQ(texture.target(-5, 33), texture.at(2, 3));
}

TEST(HvTexture, IndexerOfKeepsTheAxesApart) {
  Frame texture(8, 6);
  texture.setBounds(5, 2, 1, 3);
  EXPECT_EQ(texture.horizontal.lo, 2);
  EXPECT_EQ(texture.horizontal.hi, 5);
  EXPECT_EQ(texture.vertical.lo, 1);
  EXPECT_EQ(texture.vertical.hi, 3);
  texture.setOrigin(-0.5f, -0.6f);
  EXPECT_EQ(texture.horizontal.originI, 0);
  EXPECT_EQ(texture.vertical.originI, -1);
  texture.wholeBounds();
  EXPECT_EQ(texture.horizontal.hi, 7);
  EXPECT_EQ(texture.vertical.hi, 5);
}

// A destructor takes slots 0 and 1.
TEST(HvTexture, OperationsHaveTheirOrder) {
  if (!test::kSlotsAreKnown) GTEST_SKIP() << "where virtual functions lie is not known here";
  using test::virtualSlot;
  EXPECT_EQ(virtualSlot(&HvTexIndexer::setBounds), 2u);
  EXPECT_EQ(virtualSlot(&HvTexIndexer::setEdgeMethods), 3u);
  using ByPixel = void (HvTexIndexer::*)(std::int32_t, std::int32_t);
  using ByFraction = void (HvTexIndexer::*)(float, float);
  EXPECT_EQ(virtualSlot(static_cast<ByPixel>(&HvTexIndexer::setOrigin)), 4u);
  EXPECT_EQ(virtualSlot(static_cast<ByFraction>(&HvTexIndexer::setOrigin)), 5u);
  const auto expectOrder = []<class Texture>(const Texture&) {
    EXPECT_EQ(virtualSlot(&Texture::referTo), 6u);
    EXPECT_EQ(virtualSlot(&Texture::setOutsideColour), 7u);
    EXPECT_EQ(virtualSlot(&Texture::sampleBox), 8u);
    EXPECT_EQ(virtualSlot(&Texture::sampleAround), 9u);
  };
  expectOrder(Frame());
  expectOrder(HvTexture<int, int>());
}

}  // namespace
}  // namespace vblur
