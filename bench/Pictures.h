// The pictures of the benchmarks: allocated once, all pages touched, kept for the whole run.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

#include <benchmark/benchmark.h>

#include "bench/Cases.h"
#include "blur/FuzzSampler.h"
#include "image/HvTexture.h"

namespace vblur::bench {

// What the filter sums pixels in, and the full scale of its chain.
template <class Pixel>
using FilterAccum = std::conditional_t<Pixel::kIntegral, Ri, Rf>;
template <class Pixel>
using Blur = FuzzSampler<Pixel, FilterAccum<Pixel>, Pixel::kMax>;

template <class Pixel>
struct Pictures {
  using Texture = HvTexture<Pixel, FilterAccum<Pixel>>;

  explicit Pictures(const Size& size);

  const Size size;
  Texture source;   // noise in red, gradients in green and blue, opaque; edges reflect
  Texture between;  // scratch
  Texture result;
};

// The pictures of this size; `between` and `result` hold what the previous case left.
template <class Pixel>
Pictures<Pixel>& pictures(const Size& size);

// Over all bytes of a picture.
std::uint64_t hashOf(const std::byte* memory, std::size_t bytes);
template <class Texture>
std::uint64_t hashOf(const Texture& texture) {
  return hashOf(texture.data, static_cast<std::size_t>(texture.stride) * static_cast<std::size_t>(texture.height()));
}
template <class Texture>
void clear(Texture& texture) {
  if (texture.data == nullptr) return;
  std::memset(texture.data, 0, static_cast<std::size_t>(texture.stride) * static_cast<std::size_t>(texture.height()));
}

// The hash of the plain code's picture, cached by name. `render` renders into the texture.
template <class Texture>
std::uint64_t hashByTwin(const std::string& name, Texture& texture, const std::function<void()>& render);

// Mean and remaining contrast of a picture, which filters of equal size must agree on.
struct Likeness {
  double mean = 0.0;
  double spread = 0.0;
};
// value(x, y) is the green component. Pixels within reach of the edges are left out, since filters differ there.
Likeness likenessOf(const Size& size, float radius, const std::function<double(std::int32_t, std::int32_t)>& value);
// Of this filter's picture, cached by radius.
template <class Pixel>
const Likeness& likenessOfOurs(const Size& size, float radius);

enum class PeerShape {
  Gaussian,   // or close to it, like three boxes
  HeavyTails  // of equal sigma, but keeps more contrast
};
// Fails the case if a peer's picture differs in mean from the source, or in spread from a filter of this shape.
template <class Pixel>
void checkPeer(benchmark::State& state, const Size& size, float radius, PeerShape shape, const Likeness& found);

// The standard deviation of the filter's impulse response along one axis. A box of radius r + f has weights of 1 at
// -r to r and of f at -(r + 1) and r + 1, so its variance is
// (r (r + 1) (2 r + 1) / 3 + 2 f (r + 1)^2) / (2 r + 1 + 2 f), and the variances of the three boxes add.
double sigmaOfRadius(float radius);

}  // namespace vblur::bench
