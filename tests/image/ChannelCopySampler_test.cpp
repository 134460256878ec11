#include "image/ChannelCopySampler.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/image/CompareCopy.h"

namespace vblur::test {
namespace {

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

}  // namespace
}  // namespace vblur::test
