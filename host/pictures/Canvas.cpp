#include "host/pictures/Canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <OpenImageIO/imagebufalgo.h>

#include "host/files/Sample.h"

namespace vblur::host {

namespace {

using CanvasPixel = std::array<std::uint8_t, 4>;

std::array<float, 4> Values(Colour colour) {
  return {colour.red, colour.green, colour.blue, colour.alpha};
}

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

Canvas::Canvas(std::int32_t width, std::int32_t height, Colour background)
    : width_(width), height_(height), buffer_(OIIO::ImageSpec(width, height, 4, OIIO::TypeDesc::UINT8)) {
  OIIO::ImageBufAlgo::fill(buffer_, Values(background));
}

void Canvas::FillBox(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Colour colour) {
  if (width <= 0 || height <= 0) return;
  OIIO::ImageBufAlgo::render_box(buffer_, x, y, x + width - 1, y + height - 1, Values(colour), true);
}

void Canvas::Frame(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Colour colour) {
  OIIO::ImageBufAlgo::render_box(buffer_, x - 1, y - 1, x + width, y + height, Values(colour), false);
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
      OIIO::ImageBufAlgo::render_line(buffer_, x1 + shift, y1, x2 + shift, y2, Values(colour));
      OIIO::ImageBufAlgo::render_line(buffer_, x1, y1 + shift, x2, y2 + shift, Values(colour));
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
    const OIIO::ROI place(x, x + picture.Width(), y + line, y + line + 1, 0, 1, 0, 4);
    buffer_.set_pixels(place, OIIO::TypeDesc::UINT8, row.data());
  }
}

void Canvas::Reduced(std::int32_t x, std::int32_t y, const Canvas& large, std::int32_t factor) {
  OIIO::ImageBuf small(OIIO::ImageSpec(large.width_ / factor, large.height_ / factor, 4, OIIO::TypeDesc::UINT8));
  OIIO::ImageBufAlgo::resize(small, large.buffer_, "box");
  OIIO::ImageBufAlgo::paste(buffer_, x, y, 0, 0, small);
}

void Canvas::CopyTo(HostImage& image) const {
  image.Reset(8, 4, width_, height_);
  for (std::int32_t y = 0; y < height_; ++y) {
    const OIIO::ROI row(0, width_, y, y + 1, 0, 1, 0, 4);
    buffer_.get_pixels(row, OIIO::TypeDesc::UINT8, image.Row(height_ - 1 - y));
  }
}

}  // namespace vblur::host
