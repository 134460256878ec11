#include "image/HvRGBCopySampler.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/image/CompareCopy.h"

namespace vblur::test {
namespace {

TEST(HvRGBCopySampler, CopiesEachChoiceOfChannels) {
  EXPECT_EQ((HvRGBCopySampler<R8, Rf>().channels), 15);
  for (int channels = 0; channels <= 15; ++channels) {
    const auto choose = [&](auto& sampler) { sampler.channels = channels; };
    compareCopy<HvRGBCopySampler<R8, Rf>>(channels, choose);
    compareCopy<HvRGBCopySampler<R16, Rf>>(channels, choose);
  }
}

TEST(HvRGBCopySampler, WritesNoAlphaWithSeven) {
  HvTexture<R8, Rf> in(3, 3);
  HvTexture<R8, Rf> out(3, 3);
  std::fill_n(in.at(0, 0), 9, R8{{10, 20, 30, 40}});
  std::fill_n(out.at(0, 0), 9, R8{{1, 2, 3, 4}});
  HvRGBCopySampler<R8, Rf> copy;
  copy.channels = 7;
  copy.process(&in, &out);
  for (int i = 0; i < 9; ++i)
    EXPECT_EQ(out.at(0, 0)[i], (R8{{10, 20, 30, 4}}));
}

}  // namespace
}  // namespace vblur::test
