// A small picture and its blur or sharpen, for tests of exact values.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "blur/FuzzSampler.h"
#include "tests/support/Canvas.h"
#include "tests/support/Random.h"

namespace vblur::test {

template <class Pixel, std::int32_t Max>
struct SmallBlur {
  using Texture = HvTexture<Pixel, Ri>;

  SmallBlur(int width, int height) : source(width, height), result(width, height) {}

  Texture& run(std::int32_t mode, float sizeX, float sizeY, std::int32_t method = kFuzzBlur) {
    sampler.mode = mode;
    sampler.method = method;
    sampler.sizeX = sizeX;
    sampler.sizeY = sizeY;
    sampler.interrupt = &record;
    sampler.process(&source, &result);
    return result;
  }
  void fill(const Pixel& pixel) { std::fill_n(source.at(0, 0), source.width() * source.height(), pixel); }
  void fillRandom(std::uint64_t seed) {
    Random random(seed);
    for (int i = 0; i < source.width() * source.height(); ++i)
      *(source.at(0, 0) + i) = randomPixel(random, storageRange<Pixel>());
  }

  Texture source;
  Texture result;
  HvInterruptRecord record;
  FuzzSampler<Pixel, Ri, Max> sampler;
};

using Blur8 = SmallBlur<R8, 255>;
using Blur16 = SmallBlur<R16, 32767>;

template <class Pixel, class Accum>
std::vector<Pixel> pixelsOf(const HvTexture<Pixel, Accum>& frame) {
  return {frame.at(0, 0), frame.at(0, 0) + frame.width() * frame.height()};
}

}  // namespace vblur::test
