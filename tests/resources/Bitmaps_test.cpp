#include "resources/Bitmaps.h"

#include <array>
#include <cstdint>

#include <gtest/gtest.h>

#include "resources/Numbers.h"

namespace vblur::resources {
namespace {

using Pixel = std::array<std::uint8_t, 4>;

constexpr Pixel kGround = {32, 36, 44, 255};
constexpr Pixel kShape = {255, 176, 64, 255};

Pixel PixelAt(const ModuleBitmap& bitmap, std::int32_t x, std::int32_t y) {
  const auto at = static_cast<std::size_t>(4 * (y * bitmap.width + x));
  return {bitmap.pixels[at], bitmap.pixels[at + 1], bitmap.pixels[at + 2], bitmap.pixels[at + 3]};
}

// Pixels of these columns that are neither ground nor shape.
int SoftPixels(const ModuleBitmap& bitmap, std::int32_t from, std::int32_t to) {
  int count = 0;
  for (std::int32_t y = 0; y < bitmap.height; ++y) {
    for (std::int32_t x = from; x < to; ++x) {
      const Pixel pixel = PixelAt(bitmap, x, y);
      count += pixel != kGround && pixel != kShape ? 1 : 0;
    }
  }
  return count;
}

TEST(Bitmaps, AreThePictureOfTheEffectAndTheLogo) {
  ASSERT_EQ(Bitmaps().size(), 2u);
  EXPECT_EQ(Bitmaps()[0].id, 102);
  EXPECT_EQ(Bitmaps()[0].width, 48);
  EXPECT_EQ(Bitmaps()[0].height, 48);
  EXPECT_EQ(Bitmaps()[1].id, 103);
  EXPECT_EQ(Bitmaps()[1].width, 64);
  EXPECT_EQ(Bitmaps()[1].height, 64);
  for (const ModuleBitmap& bitmap : Bitmaps())
    EXPECT_EQ(bitmap.pixels.size(), static_cast<std::size_t>(4 * bitmap.width * bitmap.height)) << bitmap.id;
}

TEST(Bitmaps, AreOpaqueAndEndInTheirGround) {
  for (const ModuleBitmap& bitmap : Bitmaps()) {
    for (std::int32_t y = 0; y < bitmap.height; ++y) {
      for (std::int32_t x = 0; x < bitmap.width; ++x) {
        const Pixel pixel = PixelAt(bitmap, x, y);
        ASSERT_EQ(pixel[3], 255) << bitmap.id << ": " << x << ' ' << y;
        // The disc fades beyond its right edge.
        const bool right = x == bitmap.width - 1 && bitmap.id == bitmaps::kLogo;
        if (x == 0 || y == 0 || right || y == bitmap.height - 1) {
          ASSERT_EQ(pixel, kGround) << bitmap.id << ": " << x << ' ' << y;
        }
      }
    }
  }
}

TEST(Bitmaps, AreSharpOnTheLeftAndSoftOnTheRight) {
  for (const ModuleBitmap& bitmap : Bitmaps()) {
    const int left = SoftPixels(bitmap, 0, bitmap.width / 2);
    const int right = SoftPixels(bitmap, bitmap.width / 2, bitmap.width);
    EXPECT_GT(right, 3 * left) << bitmap.id;
  }
}

TEST(Bitmaps, ShowADiscAndAV) {
  const ModuleBitmap& disc = Bitmaps()[0];
  EXPECT_EQ(PixelAt(disc, 20, 24), kShape);
  EXPECT_EQ(PixelAt(disc, 10, 24), kShape);
  EXPECT_EQ(PixelAt(disc, 4, 24), kGround);
  EXPECT_EQ(PixelAt(disc, 4, 4), kGround);
  const ModuleBitmap& letter = Bitmaps()[1];
  EXPECT_EQ(PixelAt(letter, 16, 16), kShape) << "left stroke";
  EXPECT_EQ(PixelAt(letter, 47, 16), kShape) << "right stroke";
  EXPECT_EQ(PixelAt(letter, 32, 48), kShape) << "where they meet";
  EXPECT_EQ(PixelAt(letter, 32, 16), kGround) << "between them";
  EXPECT_EQ(PixelAt(letter, 16, 48), kGround) << "left of them";
}

}  // namespace
}  // namespace vblur::resources
