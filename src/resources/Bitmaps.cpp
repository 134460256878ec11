#include "resources/Bitmaps.h"

#include <algorithm>
#include <array>

namespace vblur::resources {
namespace {

constexpr std::int32_t kSide = 48;

// Coverage of a pixel by the disc; the edge is sharp in the left half and soft in the right. Distances are in half
// pixels, since the centre is between four pixels.
constexpr std::int32_t Cover(std::int32_t x, std::int32_t y) {
  constexpr std::int32_t kRadius = 30;
  const std::int32_t dx = 2 * x + 1 - kSide;
  const std::int32_t dy = 2 * y + 1 - kSide;
  const std::int32_t softness = dx < 0 ? 1 : 1 + dx / 2;
  // Falls from full to none as the square of the distance crosses that of the radius.
  const std::int32_t inside = kRadius * kRadius - dx * dx - dy * dy;
  const std::int32_t span = 2 * kRadius * softness;
  return std::clamp((inside + span) * 255 / (2 * span), 0, 255);
}

constexpr auto kEffectPicture = [] {
  constexpr std::array<std::uint8_t, 3> kDisc = {255, 176, 64};
  constexpr std::array<std::uint8_t, 3> kGround = {32, 36, 44};
  std::array<std::uint8_t, 4 * kSide * kSide> pixels{};
  for (std::int32_t y = 0; y < kSide; ++y) {
    for (std::int32_t x = 0; x < kSide; ++x) {
      const std::int32_t cover = Cover(x, y);
      const auto at = static_cast<std::size_t>(4 * (y * kSide + x));
      for (std::size_t c = 0; c < 3; ++c)
        pixels[at + c] = static_cast<std::uint8_t>((kDisc[c] * cover + kGround[c] * (255 - cover)) / 255);
      pixels[at + 3] = 255;
    }
  }
  return pixels;
}();

constexpr std::array kBitmaps = {ModuleBitmap{102, kSide, kSide, kEffectPicture}};

}  // namespace

std::span<const ModuleBitmap> Bitmaps() {
  return kBitmaps;
}

}  // namespace vblur::resources
