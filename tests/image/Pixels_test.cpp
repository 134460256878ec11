#include "image/Pixels.h"

#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/PrintPixel.h"

namespace vblur {
namespace {

template <class Pixel>
constexpr bool hasRange(std::int32_t low, std::int32_t high, std::int32_t one, bool integral) {
  return Pixel::kMin == low && Pixel::kMax == high && Pixel::kOne == one && Pixel::kIntegral == integral;
}

TEST(Pixels, HaveTheRangesOfTheirTypes) {
  static_assert(hasRange<R8>(0, 255, 255, true) && hasRange<C8>(0, 255, 255, true));
  static_assert(hasRange<R16>(-32768, 32767, 16384, true) && hasRange<C16>(-32768, 32767, 16384, true));
  static_assert(hasRange<Ri>(kInt32Min, kInt32Max, kInt32Max, true));
  static_assert(hasRange<Ci>(kInt32Min, kInt32Max, kInt32Max, true));
  static_assert(hasRange<Rf>(0, 1, 1, false) && hasRange<Cf>(0, 1, 1, false));
  static_assert(kTopOf<R8> == 255 && kTopOf<R16> == 32767);
}

TEST(Pixels, LieInMemoryAsRedGreenBlueAlpha) {
  const unsigned char bytes[] = {1, 2, 3, 4};
  R8 eight;
  std::memcpy(&eight, bytes, sizeof eight);
  EXPECT_EQ(eight, (R8{{1, 2, 3, 4}}));
  const std::int16_t words[] = {-1, 2, -3, 32767};
  R16 sixteen;
  std::memcpy(&sixteen, words, sizeof sixteen);
  EXPECT_EQ(sixteen, (R16{{-1, 2, -3, 32767}}));
}

TEST(Pixels, AreReachedByNameAndByIndex) {
  R16 pixel{{1, -2, 3, -4}};
  EXPECT_EQ(pixel[0], 1);
  EXPECT_EQ(pixel[1], -2);
  EXPECT_EQ(pixel[2], 3);
  EXPECT_EQ(pixel[3], -4);
  for (int c = 0; c < 4; ++c)
    setComponent(pixel, c, static_cast<std::int16_t>(10 * c));
  EXPECT_EQ(pixel, (R16{{0, 10, 20, 30}}));
  EXPECT_NE(pixel, (R16{{0, 10, 20, 31}}));
  EXPECT_NE(pixel, (R16{{1, 10, 20, 30}}));
}

TEST(Pixels, OfOneComponentCountAPlainInteger) {
  int plain = 5;
  setComponent(plain, 0, 9);
  EXPECT_EQ(componentOf(plain, 0), 9);
  C16 channel{{-7}};
  EXPECT_EQ(componentOf(channel, 0), -7);
  static_assert(PixelTraits<int>::kComponents == 1 && PixelTraits<R8>::kComponents == 4);
}

}  // namespace
}  // namespace vblur
