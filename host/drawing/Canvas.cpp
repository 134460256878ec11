#include "host/drawing/Canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/files/Sample.h"

namespace vblur::host {

namespace {

std::uint32_t CheckerAt(std::int32_t x, std::int32_t y) {
  constexpr std::int32_t kSquare = 8;
  return (x / kSquare + y / kSquare) % 2 == 0 ? 92 : 132;
}

CanvasPixel Shown(const CanvasPixel& pixel, AlphaView view, std::uint32_t behind) {
  if (view == AlphaView::Ignored) return {pixel[0], pixel[1], pixel[2], 255};
  const std::uint32_t alpha = pixel[3];
  CanvasPixel shown{0, 0, 0, 255};
  for (std::size_t c = 0; c < 3; ++c) {
    const std::uint32_t front = view == AlphaView::Straight ? pixel[c] * alpha : std::uint32_t{pixel[c]} * 255u;
    const std::uint32_t sum = sample::Quotient(front + behind * (255u - alpha), 255u);
    shown[c] = static_cast<std::uint8_t>(std::min(sum, 255u));
  }
  return shown;
}

}  // namespace

CanvasPixel PixelOf(Colour colour) {
  const auto part = [](float value) {
    // Never negative: NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<std::uint8_t>(std::clamp(value, 0.0f, 1.0f) * 255.0f + 0.5f);
  };
  return {part(colour.red), part(colour.green), part(colour.blue), part(colour.alpha)};
}

Canvas::Canvas(std::int32_t width, std::int32_t height, Colour background)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), PixelOf(background)) {}

CanvasPixel* Canvas::At(std::int32_t x, std::int32_t y) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return nullptr;
  return pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
}

void Canvas::FillBox(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Colour colour) {
  const CanvasPixel pixel = PixelOf(colour);
  const std::int32_t left = std::max(x, 0);
  const std::int32_t right = std::min(x + width, width_);
  for (std::int32_t row = std::max(y, 0); row < std::min(y + height, height_) && left < right; ++row)
    std::fill_n(At(left, row), right - left, pixel);
}

void Canvas::Frame(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Colour colour) {
  FillBox(x - 1, y - 1, width + 2, 1, colour);
  FillBox(x - 1, y + height, width + 2, 1, colour);
  FillBox(x - 1, y, 1, height, colour);
  FillBox(x + width, y, 1, height, colour);
}

// By whole steps: the shorter way goes on where the sum of its steps is next to one of the longer way.
void Canvas::Line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, const CanvasPixel& colour) {
  const std::int32_t across = std::abs(x2 - x1);
  const std::int32_t down = std::abs(y2 - y1);
  std::int32_t left = (across > down ? across : -down) / 2;
  while (true) {
    if (CanvasPixel* const pixel = At(x1, y1)) *pixel = colour;
    if (x1 == x2 && y1 == y2) return;
    const std::int32_t before = left;
    if (before > -across) {
      left -= down;
      x1 += x1 < x2 ? 1 : -1;
    }
    if (before < down) {
      left += across;
      y1 += y1 < y2 ? 1 : -1;
    }
  }
}

void Canvas::Curve(std::span<const CanvasPoint> points, std::int32_t thickness, Colour colour) {
  const std::int32_t before = (thickness - 1) / 2;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const auto x1 = static_cast<std::int32_t>(std::lround(points[i - 1].x));
    const auto y1 = static_cast<std::int32_t>(std::lround(points[i - 1].y));
    const auto x2 = static_cast<std::int32_t>(std::lround(points[i].x));
    const auto y2 = static_cast<std::int32_t>(std::lround(points[i].y));
    // The brush is a cross, so the line is about as wide in every direction with few strokes.
    for (std::int32_t shift = -before; shift < thickness - before; ++shift) {
      Line(x1 + shift, y1, x2 + shift, y2, PixelOf(colour));
      Line(x1, y1 + shift, x2, y2 + shift, PixelOf(colour));
    }
  }
}

void Canvas::Picture(std::int32_t x, std::int32_t y, const HostImage& picture, AlphaView view) {
  std::vector<CanvasPixel> row(static_cast<std::size_t>(picture.Width()));
  for (std::int32_t line = 0; line < picture.Height(); ++line) {
    WriteColourRow(picture.Row(picture.Height() - 1 - line), picture.Depth(), row.data(), SampleKind::Unsigned8, 4,
                   row.size());
    std::int32_t column = 0;
    for (CanvasPixel& pixel : row)
      pixel = Shown(pixel, view, CheckerAt(column++, line));
    const std::int32_t left = std::max(x, 0);
    const std::int32_t right = std::min(x + picture.Width(), width_);
    CanvasPixel* const to = At(left, y + line);
    if (to != nullptr && left < right) std::copy_n(row.data() + (left - x), right - left, to);
  }
}

namespace {

// The mean of a square, summed up in floats row by row, so that every system rounds a half alike.
CanvasPixel MeanOf(Canvas& large, std::int32_t left, std::int32_t top, std::int32_t side) {
  const float weight = 1.0f / static_cast<float>(side * side);
  std::array<float, 4> sums{};
  for (std::int32_t y = top; y < top + side; ++y) {
    for (std::int32_t x = left; x < left + side; ++x) {
      const CanvasPixel& pixel = *large.At(x, y);
      for (std::size_t c = 0; c < sums.size(); ++c)
        sums[c] += weight * (static_cast<float>(pixel[c]) * (1.0f / 255.0f));
    }
  }
  return PixelOf({sums[0], sums[1], sums[2], sums[3]});
}

}  // namespace

void Canvas::Reduced(std::int32_t x, std::int32_t y, Canvas& large, std::int32_t factor) {
  for (std::int32_t row = 0; row < large.height_ / factor; ++row) {
    for (std::int32_t column = 0; column < large.width_ / factor; ++column) {
      CanvasPixel* const to = At(x + column, y + row);
      if (to != nullptr) *to = MeanOf(large, column * factor, row * factor, factor);
    }
  }
}

void Canvas::CopyTo(HostImage& image) const {
  image.Reset(8, 4, width_, height_);
  const CanvasPixel* from = pixels_.data();
  for (std::int32_t y = 0; y < height_; ++y, from += width_)
    std::memcpy(image.Row(height_ - 1 - y), from, image.RowBytes());
}

}  // namespace vblur::host
