#include "image/SimpleCopySampler.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/image/CompareCopy.h"

namespace vblur::test {
namespace {

TEST(SimpleCopySampler, CopiesTheInfinitePlane) {
  compareCopy<SimpleCopySampler<R8, Rf>>(15, kNothing);
  compareCopy<SimpleCopySampler<R16, Ri>>(15, kNothing);
  compareCopy<SimpleCopySampler<Ri, Ri>>(15, kNothing);
  compareCopy<SimpleCopySampler<int, int>>(15, kNothing);
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

}  // namespace
}  // namespace vblur::test
