#include "resources/Bitmaps.h"

#include <algorithm>
#include <array>

#include "resources/Numbers.h"

namespace vblur::resources {
namespace {

// Shapes are given by coverage from 0 to 255 at a pixel's centre, in half pixels from the centre of the picture, which
// is between four pixels. Their edges are sharp in the left half and softer the farther right.
constexpr std::int32_t Softness(std::int32_t x, std::int32_t perUnit) {
  return x < 0 ? 1 : 1 + x / perUnit;
}

// Falls from full to none while `inside` falls from `softness` to -softness.
constexpr std::int32_t SoftEdge(std::int32_t inside, std::int32_t softness) {
  return std::clamp((inside + softness) * 255 / (2 * softness), 0, 255);
}

constexpr std::int32_t Disc(std::int32_t x, std::int32_t y) {
  constexpr std::int32_t kRadius = 30;
  // As the square of the distance crosses that of the radius.
  return SoftEdge(kRadius * kRadius - x * x - y * y, 2 * kRadius * Softness(x, 2));
}

constexpr std::int32_t Letter(std::int32_t x, std::int32_t y) {
  constexpr std::int32_t kHalfHeight = 40;
  constexpr std::int32_t kHalfStroke = 10;
  // The strokes' middle lines meet at the lower end; half as far to the side as up.
  const std::int32_t side = (kHalfHeight - kHalfStroke - y) / 2;
  const std::int32_t fromStroke = std::max(x, -x) - side;
  const std::int32_t inStroke = kHalfStroke - std::max(fromStroke, -fromStroke);
  const std::int32_t inHeight = kHalfHeight - std::max(y, -y);
  return SoftEdge(std::min(inStroke, inHeight), Softness(x, 5));
}

// Opaque.
template <std::int32_t kSide>
constexpr auto Paint(std::int32_t (*coverage)(std::int32_t x, std::int32_t y)) {
  constexpr std::array<std::uint8_t, 3> kShape = {255, 176, 64};
  constexpr std::array<std::uint8_t, 3> kGround = {32, 36, 44};
  std::array<std::uint8_t, 4 * kSide * kSide> pixels{};
  for (std::int32_t y = 0; y < kSide; ++y) {
    for (std::int32_t x = 0; x < kSide; ++x) {
      const std::int32_t cover = coverage(2 * x + 1 - kSide, 2 * y + 1 - kSide);
      const auto at = static_cast<std::size_t>(4 * (y * kSide + x));
      for (std::size_t c = 0; c < 3; ++c)
        pixels[at + c] = static_cast<std::uint8_t>((kShape[c] * cover + kGround[c] * (255 - cover)) / 255);
      pixels[at + 3] = 255;
    }
  }
  return pixels;
}

constexpr std::int32_t kEffectSide = 48;
constexpr std::int32_t kLogoSide = 64;
constexpr auto kEffectPicture = Paint<kEffectSide>(Disc);
constexpr auto kLogoPicture = Paint<kLogoSide>(Letter);

constexpr std::array kBitmaps = {
    ModuleBitmap{bitmaps::kEffect, kEffectSide, kEffectSide, kEffectPicture},
    ModuleBitmap{bitmaps::kLogo, kLogoSide, kLogoSide, kLogoPicture},
};

}  // namespace

std::span<const ModuleBitmap> Bitmaps() {
  return kBitmaps;
}

}  // namespace vblur::resources
