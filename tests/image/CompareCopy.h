// Compares copies with a plain copy of each pixel on random pictures, at every level.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/HvTexture.h"
#include "tests/support/Canvas.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {

// The target after a copy of chosen channels, one pixel at a time.
template <class Texture>
std::vector<typename Texture::Pixel> plainCopy(const Texture& in, const Texture& out, int channels) {
  std::vector<typename Texture::Pixel> result;
  for (int y = 0; y < out.height(); ++y) {
    for (int x = 0; x < out.width(); ++x) {
      const std::int32_t column = in.horizontal.mapIndex(x + out.horizontal.writeOrigin - in.horizontal.originI);
      const std::int32_t row = in.vertical.mapIndex(y + out.vertical.writeOrigin - in.vertical.originI);
      const bool outside = column == kOutside || row == kOutside;
      const typename Texture::Pixel from = outside ? in.outsideColour : *in.at(column, row);
      typename Texture::Pixel to = *out.at(x, y);
      for (int c = 0; c < PixelTraits<typename Texture::Pixel>::kComponents; ++c) {
        if ((channels >> c & 1) != 0) setComponent(to, c, componentOf(from, c));
      }
      result.push_back(to);
    }
  }
  return result;
}

template <class Sampler, class Prepare>
void compareCopy(int channels, const Prepare& prepare) {
  using Texture = typename Sampler::Texture;
  using Pixel = typename Texture::Pixel;
  KernelRunsOfCases runs;
  forRandomCases(60, [&](Random& random) {
    const bool wide = random.oneIn(3);
    Canvas<Pixel> from(random.within(1, wide ? 70 : 9), random.within(1, 9), randomLayout(random));
    Canvas<Pixel> to(random.within(1, wide ? 150 : 15), random.within(1, 15), randomLayout(random));
    from.fillRandom(random);
    to.fillRandom(random);
    Texture in;
    Texture out;
    from.wrapIn(in);
    to.wrapIn(out);
    setRandomSurroundings(random, in, storageRange<Pixel>());
    setRandomSurroundings(random, out, storageRange<Pixel>());
    out.setWriteOrigin(random.within(-9, 9), random.within(-9, 9));
    const auto expected = plainCopy(in, out, channels);
    const Canvas<Pixel> before = to;
    for (const std::string& name : HvCpuLevels()) {
      const CpuLevel level(name);
      const ThreadCount scope(random.within(1, 3));
      to.copyFrom(before);
      Sampler sampler;
      prepare(sampler);
      sampler.process(&in, &out);
      runs.note();
      EXPECT_EQ(to.pixels(), expected) << name;
      EXPECT_TRUE(to.guardsAreIntact()) << name;
    }
  });
  if (channels == 15) {
    EXPECT_TRUE(runs.had({"mirrorWords", "fillWords"}));
  } else if (channels != 0) {
    const std::string bits = std::to_string(8 * sizeof(Pixel));
    EXPECT_TRUE(runs.had({"copyBits " + bits, "mirrorBits " + bits, "fillBits " + bits}));
  }
}

inline const auto kNothing = [](auto&) {};

}  // namespace vblur::test
