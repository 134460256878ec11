#include <cmath>

#include <gtest/gtest.h>

#include "image/HvTexture.h"
#include "tests/support/Canvas.h"
#include "tests/support/TypeNames.h"

namespace vblur {
namespace {

using test::Canvas;
using test::forRandomCases;
using test::Random;
using test::setRandomSurroundings;
using test::storageRange;

template <class Texture>
class SampleAt : public ::testing::Test {};

using Textures = ::testing::Types<HvTexture<R8, Rf>, HvTexture<R8, Ri>, HvTexture<R16, Rf>, HvTexture<R16, Ri>,
                                  HvTexture<Ri, Ri>, HvTexture<C8, Cf>, HvTexture<C16, Cf>, HvTexture<int, int>>;
TYPED_TEST_SUITE(SampleAt, Textures, test::TypeNames);

// The pixel of the infinite plane at buffer indices.
template <class Texture>
double planeAt(const Texture& texture, std::int32_t x, std::int32_t y, int component) {
  const std::int32_t column = texture.horizontal.mapIndex(x);
  const std::int32_t row = texture.vertical.mapIndex(y);
  const bool outside = column == kOutside || row == kOutside;
  return static_cast<double>(componentOf(outside ? texture.outsideColour : *texture.at(column, row), component));
}

template <class Component>
Component plainLerp(Component a, Component b, float t) {
  if constexpr (std::is_floating_point_v<Component>) {
    return (b - a) * t + a;
  } else {
    return static_cast<Component>(std::trunc(static_cast<float>(b - a) * t + static_cast<float>(a)));
  }
}

// Always interpolates all four pixels.
template <class Texture>
typename Texture::Accum plainBilinear(const Texture& texture, float x, float y) {
  using Component = ComponentOf<typename Texture::Accum>;
  const float fx = x - 0.5f - texture.horizontal.originF;
  const float fy = y - 0.5f - texture.vertical.originF;
  const auto ix = static_cast<std::int32_t>(std::floor(fx));
  const auto iy = static_cast<std::int32_t>(std::floor(fy));
  const float tx = fx - static_cast<float>(ix);
  const float ty = fy - static_cast<float>(iy);
  typename Texture::Accum result{};
  for (int c = 0; c < PixelTraits<typename Texture::Accum>::kComponents; ++c) {
    const auto at = [&](int dx, int dy) { return static_cast<Component>(planeAt(texture, ix + dx, iy + dy, c)); };
    const Component lower = plainLerp(at(0, 0), at(1, 0), tx);
    const Component upper = plainLerp(at(0, 1), at(1, 1), tx);
    setComponent(result, c, plainLerp(lower, upper, ty));
  }
  return result;
}

template <class Pixel>
test::ComponentRange<Pixel> exactRange() {
  // A float holds integers of 24 bits only.
  if constexpr (sizeof(ComponentOf<Pixel>) == 4) {
    return {-100000, 100000};
  } else {
    return storageRange<Pixel>();
  }
}

TYPED_TEST(SampleAt, EqualsAPlainBilinearOnThePlane) {
  using Pixel = typename TypeParam::Pixel;
  forRandomCases(60, [](Random& random) {
    Canvas<Pixel> canvas(random.within(1, 6), random.within(1, 6), test::randomLayout(random));
    canvas.fillRandom(random, exactRange<Pixel>());
    TypeParam texture;
    canvas.wrapIn(texture);
    setRandomSurroundings(random, texture, exactRange<Pixel>());
    if (random.oneIn(2)) texture.setOrigin(random.between(-6.0f, 6.0f), random.between(-6.0f, 6.0f));
    for (int i = 0; i < 200; ++i) {
      const bool eighths = random.oneIn(2);
      const auto coordinate = [&] {
        return eighths ? static_cast<float>(random.within(-160, 160)) / 8.0f : random.between(-20.0f, 20.0f);
      };
      const float x = coordinate();
      const float y = coordinate();
      ASSERT_EQ(texture.sampleAt(x, y), plainBilinear(texture, x, y)) << x << ", " << y;
    }
  });
}

TYPED_TEST(SampleAt, GivesTheOutsideColourWithoutPixels) {
  TypeParam texture;
  texture.setEdgeMethods(kEdgeWrap, kEdgeReflect);
  typename TypeParam::Pixel pixel{};
  setComponent(pixel, 0, 100);
  texture.setOutsideColour(pixel);
  EXPECT_EQ(componentOf(texture.sampleAt(0.25f, 3.75f), 0), static_cast<ComponentOf<typename TypeParam::Accum>>(100));
}

TYPED_TEST(SampleAt, OfABoxIsThatOfItsCentre) {
  Random random(5);
  Canvas<typename TypeParam::Pixel> canvas(6, 5);
  canvas.fillRandom(random, exactRange<typename TypeParam::Pixel>());
  TypeParam texture;
  canvas.wrapIn(texture);
  const auto expected = texture.sampleAt(2.25f, 3.5f);
  if constexpr (std::is_same_v<TypeParam, HvTexture<int, int>>) {
    EXPECT_EQ(texture.sampleBox(1.5f, 2.5f, 3.0f, 4.5f), expected);
    EXPECT_EQ(texture.sampleAround(2.25f, 3.5f, 0.75f, 1.0f), expected);
  } else {
    typename TypeParam::Accum box{};
    typename TypeParam::Accum around{};
    texture.sampleBox(box, 1.5f, 2.5f, 3.0f, 4.5f);
    texture.sampleAround(around, 2.25f, 3.5f, 0.75f, 1.0f);
    EXPECT_EQ(box, expected);
    EXPECT_EQ(around, expected);
  }
}

class SampleAtTheEdge : public ::testing::Test {
 protected:
  SampleAtTheEdge() {
    canvas_.fill(R8{{200, 200, 200, 200}});
    canvas_.wrapIn(texture_);
    texture_.setOutsideColour(R8{{100, 100, 100, 100}});
  }
  float redAt(float x) const { return texture_.sampleAt(x, 2.5f).red; }

  Canvas<R8> canvas_{4, 4};
  HvTexture<R8, Rf> texture_;
};

TEST_F(SampleAtTheEdge, MeetsTheOutsideColourHalfWayAtTheBoundary) {
  EXPECT_EQ(redAt(4.0f), 150.0f);
  EXPECT_EQ(redAt(0.0f), 150.0f);
  EXPECT_EQ(redAt(3.5f), 200.0f);
  EXPECT_EQ(redAt(3.75f), 175.0f);
}

TEST_F(SampleAtTheEdge, IsPureOutsideOnePixelBeyondTheLastCentre) {
  EXPECT_EQ(redAt(4.5f), 100.0f);
  EXPECT_EQ(redAt(4.4375f), 106.25f);
  EXPECT_EQ(redAt(-0.5f), 100.0f);
  EXPECT_EQ(redAt(-7.25f), 100.0f);
}

TEST_F(SampleAtTheEdge, StaysPureBeyondARepeatedEdge) {
  texture_.setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
  EXPECT_EQ(redAt(4.0f), 200.0f);
  EXPECT_EQ(redAt(-9.0f), 200.0f);
}

TEST(SampleAtIntegers, TruncatesAfterEachOfTheThreeSteps) {
  Canvas<int> canvas(2, 2);
  canvas.at(0, 0) = 0;
  canvas.at(1, 0) = 3;
  canvas.at(0, 1) = 1;
  canvas.at(1, 1) = 4;
  HvTexture<int, int> texture;
  canvas.wrapIn(texture);
  // trunc(1.5) = 1 and trunc(2.5) = 2, and then trunc(1.5) = 1, where one truncation of 2 would be 2.
  EXPECT_EQ(texture.sampleAt(1.0f, 1.0f), 1);
}

}  // namespace
}  // namespace vblur
