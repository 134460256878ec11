#include "host/studies/SheetPictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

namespace {

template <typename Component>
void TurnRow(const std::byte* from, std::byte* to, std::int32_t width) {
  const auto* source = reinterpret_cast<const Component*>(from);
  auto* target = reinterpret_cast<Component*>(to) + 4 * (static_cast<std::ptrdiff_t>(width) - 1);
  for (std::int32_t x = 0; x < width; ++x, source += 4, target -= 4) {
    const std::array<Component, 4> turned{source[2], source[0], source[1], source[3]};
    std::copy(turned.begin(), turned.end(), target);
  }
}

}  // namespace

SheetPoint PanelSize(const SheetPlan& plan, std::int32_t width, std::int32_t height) {
  const double scale =
      std::min({1.0, plan.roomWidth / static_cast<double>(width), plan.roomHeight / static_cast<double>(height)});
  const auto scaled = [scale](std::int32_t side) {
    return std::max(1, static_cast<std::int32_t>(std::lround(side * scale)));
  };
  return {scaled(width), scaled(height)};
}

void ScalePicture(const HostImage& from, std::int32_t width, std::int32_t height, HostImage& to) {
  to.Reset(from.Depth(), 4, width, height);
  ThePictureLibrary().Scale(from, to);
}

void MakeSecondClip(const HostImage& from, HostImage& to) {
  to.Reset(from.Depth(), 4, from.Width(), from.Height());
  for (std::int32_t y = 0; y < from.Height(); ++y) {
    std::byte* row = to.Row(from.Height() - 1 - y);
    if (from.Depth() == 8) {
      TurnRow<std::uint8_t>(from.Row(y), row, from.Width());
    } else if (from.Depth() == 16) {
      TurnRow<std::int16_t>(from.Row(y), row, from.Width());
    } else {
      TurnRow<float>(from.Row(y), row, from.Width());
    }
  }
}

}  // namespace vblur::host
