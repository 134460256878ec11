// Whether two textures share memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace vblur {

// Whether two textures may share pixels, by their address ranges: interleaved rows count as shared.
template <class Texture>
bool shareMemory(const Texture& a, const Texture& b) {
  if (!a.hasPixels() || !b.hasPixels()) return false;
  const auto ends = [](const Texture& texture) {
    const auto first = reinterpret_cast<std::uintptr_t>(texture.at(0, 0));
    const auto last = reinterpret_cast<std::uintptr_t>(texture.at(0, texture.height() - 1));
    const auto row = static_cast<std::size_t>(texture.width()) * sizeof(typename Texture::Pixel);
    return std::pair{std::min(first, last), std::max(first, last) + row};
  };
  const auto [firstA, endA] = ends(a);
  const auto [firstB, endB] = ends(b);
  return firstA < endB && firstB < endA;
}

}  // namespace vblur
