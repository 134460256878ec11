// The pictures that are measured with: made once, every page of them touched, and kept for the whole run.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/Cases.h"
#include "image/HvTexture.h"

namespace vblur::bench {

template <class Pixel>
struct Pictures {
  using Texture = HvTexture<Pixel, Ri>;

  explicit Pictures(const Size& size);

  const Size size;
  Texture source;   // noise in red, slopes in green and blue, opaque; edges reflect
  Texture between;  // room for whatever a case needs
  Texture result;
};

// Of this size; the pixels of `between` and `result` are what the case before has left.
template <class Pixel>
Pictures<Pixel>& pictures(const Size& size);

// Of all bytes of a picture.
std::uint64_t hashOf(const std::byte* memory, std::size_t bytes);
template <class Texture>
std::uint64_t hashOf(const Texture& texture) {
  return hashOf(texture.data, static_cast<std::size_t>(texture.stride) * static_cast<std::size_t>(texture.height()));
}
template <class Texture>
void clear(Texture& texture) {
  std::memset(texture.data, 0, static_cast<std::size_t>(texture.stride) * static_cast<std::size_t>(texture.height()));
}

// The hash of the picture that the plain code makes. Made once for each name; `render` leaves the picture in the
// texture.
template <class Texture>
std::uint64_t hashByTwin(const std::string& name, Texture& texture, const std::function<void()>& render);

// How bright a picture is and how much is left of its slopes: what two filters of one size must agree on.
struct Likeness {
  double mean = 0.0;
  double spread = 0.0;
};
// value(x, y) is a picture's green. What lies as near to the edges as a filter of this radius reaches is left out:
// there each filter has its own way.
Likeness likenessOf(const Size& size, float radius, const std::function<double(std::int32_t, std::int32_t)>& value);
// Of our own filter's picture, made once for each radius.
template <class Pixel>
const Likeness& likenessOfOurs(const Size& size, float radius);

enum class PeerShape {
  Gaussian,   // as ours, nearly
  HeavyTails  // of the same sigma, but leaves more of the slopes
};
// Ends the case as an error where a peer's picture has another mean than the source, or another spread than a filter
// of this shape leaves.
template <class Pixel>
void checkPeer(benchmark::State& state, const Size& size, float radius, PeerShape shape, const Likeness& found);

// The standard deviation of the filter's impulse response along one axis. A box of radius r + f has weights of 1 at
// -r to r and of f at -(r + 1) and r + 1, so its variance is
// (r (r + 1) (2 r + 1) / 3 + 2 f (r + 1)^2) / (2 r + 1 + 2 f), and the variances of the three boxes add.
double sigmaOfRadius(float radius);

}  // namespace vblur::bench
