// Grey spread over the components of pixels, by exact values.
#include "blur/GreyToRGBSampler.h"

#include <utility>

#include <gtest/gtest.h>

#include "tests/support/Canvas.h"

namespace vblur::test {
namespace {

using GreyPicture = HvTexture<int, int>;
using Frame = HvTexture<R8, Ri>;

// One grey pixel and the outside grey beside it, spread with the two flags.
std::pair<R8, R8> spread(int grey, int outside, bool threshold, bool opaque) {
  Canvas<int> canvas(1, 1);
  canvas.at(0, 0) = grey;
  GreyPicture picture;
  canvas.wrapIn(picture);
  picture.setOutsideColour(outside);
  Canvas<R8> result(2, 1);
  Frame frame;
  result.wrapIn(frame);
  GreyToRGBSampler<GreyPicture, Frame, int, R8, 255> spreader;
  spreader.threshold = threshold;
  spreader.opaque = opaque;
  spreader.process(&picture, &frame);
  return {result.at(0, 0), result.at(1, 0)};
}

TEST(GreyToRGBSampler, SpreadsGreyOverAllComponentsByItsLowBits) {
  EXPECT_EQ(spread(7, 9, false, false), (std::pair{R8{{7, 7, 7, 7}}, R8{{9, 9, 9, 9}}}));
  EXPECT_EQ(spread(257, -1, false, false), (std::pair{R8{{1, 1, 1, 1}}, R8{{255, 255, 255, 255}}}));
}

TEST(GreyToRGBSampler, MakesAlphaOpaqueBeyondTheInputToo) {
  EXPECT_EQ(spread(7, 9, false, true), (std::pair{R8{{7, 7, 7, 255}}, R8{{9, 9, 9, 255}}}));
}

TEST(GreyToRGBSampler, CutsAtZeroButNotBeyondTheInput) {
  EXPECT_EQ(spread(7, 9, true, false), (std::pair{R8{{255, 255, 255, 255}}, R8{{9, 9, 9, 9}}}));
  EXPECT_EQ(spread(0, 9, true, false), (std::pair{R8{{0, 0, 0, 0}}, R8{{9, 9, 9, 9}}}));
  EXPECT_EQ(spread(0, 9, true, true), (std::pair{R8{{0, 0, 0, 255}}, R8{{9, 9, 9, 255}}}));
  EXPECT_EQ(spread(-3, 9, true, true), (std::pair{R8{{255, 255, 255, 255}}, R8{{9, 9, 9, 255}}}));
}

}  // namespace
}  // namespace vblur::test
