// Blurs a buffer with the installed library: a white pixel in the middle of a black picture.
#include <cstdio>
#include <vector>

#include <blur/FuzzSampler.h>

int main() {
  constexpr int kSize = 9;
  std::vector<vblur::R8> before(kSize * kSize);
  std::vector<vblur::R8> after(before.size());
  vblur::R8& middle = before[before.size() / 2];
  middle.red = middle.green = middle.blue = middle.alpha = 255;

  vblur::HvTexture<vblur::R8, vblur::Ri> source;
  vblur::HvTexture<vblur::R8, vblur::Ri> result;
  source.wrap(kSize, kSize, before.data());
  result.wrap(kSize, kSize, after.data());
  vblur::FuzzSampler<vblur::R8, vblur::Ri, 255> sampler;
  sampler.sizeX = sampler.sizeY = 0.5f;
  sampler.process(&source, &result);

  // Three boxes of 1/4, 1/2, 1/4 per axis: the middle keeps 20/64 on each, rounded box by box.
  const int peak = after[after.size() / 2].red;
  const int beside = after[after.size() / 2 + 1].red;
  std::printf("peak %d, beside %d\n", peak, beside);
  return peak == 25 && beside == 19 ? 0 : 1;
}
