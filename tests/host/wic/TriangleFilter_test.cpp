#include "host/wic/TriangleFilter.h"

#include <gtest/gtest.h>

#include "tests/support/host/Pictures.h"

namespace vblur::host {
namespace {

HostImage& Scaled(const HostImage& from, std::int32_t width, std::int32_t height, HostImage& to) {
  to.Reset(from.Depth(), 4, width, height);
  ScaleByTriangles(from, to);
  return to;
}

TEST(TriangleFilter, TheSameSizeIsTheSamePicture) {
  for (const std::int32_t depth : {8, 16}) {
    HostImage from;
    from.Reset(depth, 4, 13, 7);
    FillRandom(from, depth == 8 ? 0 : -32768, depth == 8 ? 255 : 32767, 3);
    HostImage to;
    EXPECT_EQ(Components(Scaled(from, 13, 7, to)), Components(from));
  }
}

TEST(TriangleFilter, AFlatPictureStaysFlatToItsEdges) {
  for (const std::int32_t value : {0, 1, 77, 255}) {
    HostImage from;
    from.Reset(8, 4, 31, 17);
    for (std::size_t i = 0; i < ComponentCount(from); ++i)
      SetComponent(from, i, value);
    HostImage to;
    for (const std::int32_t component : Components(Scaled(from, 9, 40, to)))
      ASSERT_EQ(component, value);
  }
}

TEST(TriangleFilter, FloatsAreNotRounded) {
  HostImage from;
  from.Reset(32, 4, 8, 1);
  from.Clear();
  SetFloats(from, std::vector<float>(32, 0.3f));
  HostImage to;
  for (const float component : Floats(Scaled(from, 8, 1, to)))
    ASSERT_EQ(component, 0.3f);
}

// Half as many pixels: each is made of four, by 1, 3, 3 and 1 eighths.
TEST(TriangleFilter, WeighsByDistance) {
  HostImage from;
  from.Reset(16, 4, 8, 1);
  for (std::size_t i = 0; i < ComponentCount(from); ++i)
    SetComponent(from, i, i / 4 == 3 ? 800 : 0);
  HostImage to;
  Scaled(from, 4, 1, to);
  for (std::size_t c = 0; c < 4; ++c) {
    EXPECT_EQ(Component(to, c), 0);
    EXPECT_EQ(Component(to, 4 + c), 300);
    EXPECT_EQ(Component(to, 8 + c), 100);
    EXPECT_EQ(Component(to, 12 + c), 0);
  }
}

TEST(TriangleFilter, ComponentsAreIndependent) {
  HostImage from;
  from.Reset(8, 4, 5, 5);
  for (std::size_t i = 0; i < ComponentCount(from); ++i)
    SetComponent(from, i, static_cast<std::int32_t>(50 * (i % 4)));
  HostImage to;
  Scaled(from, 3, 2, to);
  for (std::size_t i = 0; i < ComponentCount(to); ++i)
    ASSERT_EQ(Component(to, i), static_cast<std::int32_t>(50 * (i % 4)));
}

}  // namespace
}  // namespace vblur::host
