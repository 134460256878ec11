#include "host/hosted/Premultiply.h"

#include <gtest/gtest.h>

#include "tests/support/host/Pictures.h"

namespace vblur::host {
namespace {

std::vector<std::int32_t> Changed(void (*change)(HostImage&, HostRows), std::int32_t depth,
                                  std::vector<std::int32_t> pixel) {
  HostImage image;
  image.Reset(depth, 4, 1, 1);
  for (std::size_t c = 0; c < 4; ++c)
    SetComponent(image, c, pixel[c]);
  change(image, image.AllRows());
  return Components(image);
}

using Pixel = std::vector<std::int32_t>;

TEST(Premultiply, ColoursAreMultipliedToTheNearest) {
  EXPECT_EQ(Changed(MultiplyByAlpha, 8, {255, 100, 1, 128}), (Pixel{128, 50, 1, 128}));
  EXPECT_EQ(Changed(MultiplyByAlpha, 8, {255, 100, 7, 0}), (Pixel{0, 0, 0, 0}));
  EXPECT_EQ(Changed(MultiplyByAlpha, 8, {255, 100, 7, 255}), (Pixel{255, 100, 7, 255}));
  EXPECT_EQ(Changed(MultiplyByAlpha, 16, {16384, -16384, 3, 8192}), (Pixel{8192, -8192, 2, 8192}));
  EXPECT_EQ(Changed(MultiplyByAlpha, 16, {32767, -32768, -3, 32767}), (Pixel{32767, -32768, -6, 32767}));
}

TEST(Premultiply, ColoursAreDividedToTheNearestWithinTheirRange) {
  EXPECT_EQ(Changed(DivideByAlpha, 8, {128, 50, 1, 128}), (Pixel{255, 100, 2, 128}));
  EXPECT_EQ(Changed(DivideByAlpha, 8, {200, 0, 3, 100}), (Pixel{255, 0, 8, 100}));
  EXPECT_EQ(Changed(DivideByAlpha, 8, {9, 8, 7, 0}), (Pixel{9, 8, 7, 0}));
  EXPECT_EQ(Changed(DivideByAlpha, 16, {8192, -8192, 2, 8192}), (Pixel{16384, -16384, 4, 8192}));
  EXPECT_EQ(Changed(DivideByAlpha, 16, {8192, -8192, 1, 1}), (Pixel{32767, -32768, 16384, 1}));
  EXPECT_EQ(Changed(DivideByAlpha, 16, {8192, -8192, 1, -5}), (Pixel{8192, -8192, 1, -5}));
}

TEST(Premultiply, OpaqueColoursStay) {
  for (std::int32_t value = 0; value <= 255; ++value)
    EXPECT_EQ(Changed(DivideByAlpha, 8, Changed(MultiplyByAlpha, 8, {value, 0, 0, 255})), (Pixel{value, 0, 0, 255}));
}

TEST(Premultiply, OtherRowsStay) {
  HostImage image;
  image.Reset(8, 4, 1, 3);
  const Pixel before = {200, 100, 50, 51, 200, 100, 50, 51, 200, 100, 0, 0};
  for (std::size_t c = 0; c < before.size(); ++c)
    SetComponent(image, c, before[c]);
  EXPECT_FALSE(HasHiddenColours(image, {0, 2}));
  EXPECT_TRUE(HasHiddenColours(image, {2, 3}));
  EXPECT_FALSE(HasHiddenColours(image, {3, 3}));
  MultiplyByAlpha(image, {1, 2});
  EXPECT_EQ(Components(image), (Pixel{200, 100, 50, 51, 40, 20, 10, 51, 200, 100, 0, 0}));
  DivideByAlpha(image, {1, 2});
  EXPECT_EQ(Components(image), before);
}

}  // namespace
}  // namespace vblur::host
