#include "bench/Pictures.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <utility>

#include "image/HvCpu.h"

namespace vblur::bench {

namespace {

// A 256th of full intensity in the pixels' scale.
template <class Pixel>
constexpr auto kStep = [] {
  if constexpr (Pixel::kIntegral) {
    return (Pixel::kOne + 1) / 256;
  } else {
    return 1.0f / 256.0f;
  }
}();

template <class Pixel>
void fill(Pictures<Pixel>& pictures) {
  using Component = ComponentOf<Pixel>;
  using Whole = decltype(kStep<Pixel>);
  std::uint32_t noise = 1;
  for (std::int32_t y = 0; y < pictures.size.height; ++y) {
    for (std::int32_t x = 0; x < pictures.size.width; ++x) {
      noise = noise * 1664525u + 1013904223u;
      Pixel& pixel = *pictures.source.at(x, y);
      pixel.red = static_cast<Component>(static_cast<Whole>(noise >> 18) * kStep<Pixel> / 64);
      pixel.green = static_cast<Component>(static_cast<Whole>(x & 255) * kStep<Pixel>);
      pixel.blue = static_cast<Component>(static_cast<Whole>(y & 255) * kStep<Pixel>);
      pixel.alpha = Pixel::kOne;
    }
  }
}

}  // namespace

template <class Pixel>
Pictures<Pixel>::Pictures(const Size& pictureSize)
    : size(pictureSize),
      source(size.width, size.height),
      between(size.width, size.height),
      result(size.width, size.height) {
  fill(*this);
  source.setEdgeMethods(kEdgeReflect, kEdgeReflect);
  clear(between);
  clear(result);
}

template <class Pixel>
Pictures<Pixel>& pictures(const Size& size) {
  static std::map<Size, std::unique_ptr<Pictures<Pixel>>> all;
  auto& found = all[size];
  if (found == nullptr) found = std::make_unique<Pictures<Pixel>>(size);
  return *found;
}

std::uint64_t hashOf(const std::byte* memory, std::size_t bytes) {
  constexpr std::size_t kLanes = 4;
  std::uint64_t lanes[kLanes] = {1, 2, 3, 4};
  for (; bytes >= sizeof lanes; bytes -= sizeof lanes, memory += sizeof lanes) {
    std::uint64_t words[kLanes];
    std::memcpy(words, memory, sizeof words);
    for (std::size_t i = 0; i < kLanes; ++i)
      lanes[i] = (lanes[i] ^ words[i]) * 0x9E3779B97F4A7C15u;
  }
  std::uint64_t hash = bytes;
  for (; bytes > 0; --bytes, ++memory)
    hash = (hash ^ static_cast<std::uint64_t>(*memory)) * 0x100000001B3u;
  for (const std::uint64_t lane : lanes)
    hash = (hash ^ lane ^ (lane >> 32)) * 0x9E3779B97F4A7C15u;
  return hash;
}

template <class Texture>
std::uint64_t hashByTwin(const std::string& name, Texture& texture, const std::function<void()>& render) {
  static std::map<std::string, std::uint64_t> known;
  if (const auto found = known.find(name); found != known.end()) return found->second;
  const std::string level = HvCpuLevel();
  HvSetCpuLevel("twin");
  clear(texture);
  render();
  HvSetCpuLevel(level);
  return known[name] = hashOf(texture);
}

Likeness likenessOf(const Size& size, float radius, const std::function<double(std::int32_t, std::int32_t)>& value) {
  // Samples every seventh pixel, shifted from row to row so that every column counts.
  constexpr std::int32_t kStride = 7;
  const auto reach = static_cast<std::int32_t>(3.0f * radius) + 6;
  const std::int32_t marginX = std::min(reach, size.width / 3);
  const std::int32_t marginY = std::min(reach, size.height / 3);
  double sum = 0.0;
  double squares = 0.0;
  double count = 0.0;
  for (std::int32_t y = marginY; y < size.height - marginY; ++y) {
    for (std::int32_t x = marginX + y % kStride; x < size.width - marginX; x += kStride) {
      const double v = value(x, y);
      sum += v;
      squares += v * v;
      count += 1.0;
    }
  }
  const double mean = sum / count;
  return {mean, std::sqrt(std::max(squares / count - mean * mean, 0.0))};
}

namespace {

template <class Texture>
Likeness likenessOfTexture(const Texture& texture, float radius) {
  return likenessOf({texture.width(), texture.height()}, radius,
                    [&](std::int32_t x, std::int32_t y) { return static_cast<double>(texture.at(x, y)->green); });
}

template <class Pixel>
const Likeness& likenessOfSource(const Size& size, float radius) {
  static std::map<std::pair<Size, float>, Likeness> known;
  const auto [entry, isNew] = known.try_emplace({size, radius});
  if (isNew) entry->second = likenessOfTexture(pictures<Pixel>(size).source, radius);
  return entry->second;
}

}  // namespace

template <class Pixel>
const Likeness& likenessOfOurs(const Size& size, float radius) {
  static std::map<std::pair<Size, float>, Likeness> known;
  const auto [entry, isNew] = known.try_emplace({size, radius});
  if (isNew) {
    Pictures<Pixel>& all = pictures<Pixel>(size);
    Blur<Pixel> sampler;
    sampler.sizeX = sampler.sizeY = radius;
    sampler.process(&all.source, &all.result);
    entry->second = likenessOfTexture(all.result, radius);
  }
  return entry->second;
}

template <class Pixel>
void checkPeer(benchmark::State& state, const Size& size, float radius, PeerShape shape, const Likeness& found) {
  // Large blurs of ours darken, so that the mean is compared with the source's and the spread with ours.
  constexpr double kSteps = 2.0 * static_cast<double>(kStep<Pixel>);
  const Likeness& source = likenessOfSource<Pixel>(size, radius);
  const Likeness& ours = likenessOfOurs<Pixel>(size, radius);
  const double allowance = kSteps + 0.05 * ours.spread;
  const double most = shape == PeerShape::HeavyTails ? source.spread : ours.spread + allowance;
  if (std::abs(found.mean - source.mean) > kSteps) return state.SkipWithError("the mean differs from the source's");
  if (found.spread < ours.spread - allowance || found.spread > most) {
    state.SkipWithError("the spread differs from that of a filter of this size");
  }
}

double sigmaOfRadius(float radius) {
  const double r = std::floor(static_cast<double>(radius));
  const double f = static_cast<double>(radius) - r;
  const double squares = r * (r + 1.0) * (2.0 * r + 1.0) / 3.0 + 2.0 * f * (r + 1.0) * (r + 1.0);
  return std::sqrt(3.0 * squares / (2.0 * r + 1.0 + 2.0 * f));
}

#define VBLUR_BENCH_INSTANCES(Pixel)                                                                 \
  template struct Pictures<Pixel>;                                                                   \
  template Pictures<Pixel>& pictures<Pixel>(const Size&);                                            \
  template const Likeness& likenessOfOurs<Pixel>(const Size&, float);                                \
  template void checkPeer<Pixel>(benchmark::State&, const Size&, float, PeerShape, const Likeness&); \
  template std::uint64_t hashByTwin(const std::string&, HvTexture<Pixel, Rf>&, const std::function<void()>&);
VBLUR_BENCH_INSTANCES(R8)
VBLUR_BENCH_INSTANCES(R16)
VBLUR_BENCH_INSTANCES(Rf)
template std::uint64_t hashByTwin(const std::string&, HvTexture<R8, Ri>&, const std::function<void()>&);
template std::uint64_t hashByTwin(const std::string&, HvTexture<R16, Ri>&, const std::function<void()>&);
#undef VBLUR_BENCH_INSTANCES

}  // namespace vblur::bench
