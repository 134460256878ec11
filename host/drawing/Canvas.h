// A canvas for sheets and plots: flat colours, lines and pictures. Row 0 is the top.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "host/hosted/HostImage.h"

namespace vblur::host {

// Components from 0 to 1, in display encoding.
struct Colour {
  float red = 0.0f;
  float green = 0.0f;
  float blue = 0.0f;
  float alpha = 1.0f;
};

struct CanvasPoint {
  double x = 0.0;
  double y = 0.0;
};

// How the alpha of a picture is shown.
enum class AlphaView {
  Straight,    // over a checkerboard; colours are not multiplied by alpha
  Associated,  // over a checkerboard; they are
  Ignored,     // the colours alone
};

// Red, green, blue and alpha.
using CanvasPixel = std::array<std::uint8_t, 4>;

CanvasPixel PixelOf(Colour colour);

class Canvas {
 public:
  // Of at least one pixel a side, in one colour.
  Canvas(std::int32_t width, std::int32_t height, Colour background);

  std::int32_t Width() const { return width_; }
  std::int32_t Height() const { return height_; }

  // Everything is clipped to the canvas, here and below.
  void FillBox(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Colour colour);
  // The outline of a box, one pixel wide, just outside of it.
  void Frame(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Colour colour);
  // A line through points, `thickness` pixels wide, with hard edges.
  void Curve(std::span<const CanvasPoint> points, std::int32_t thickness, Colour colour);
  // A four-component picture with its upper left corner at (x, y).
  void Picture(std::int32_t x, std::int32_t y, const HostImage& picture, AlphaView view);
  // Draws a canvas scaled down by `factor`, which antialiases it.
  void Reduced(std::int32_t x, std::int32_t y, Canvas& large, std::int32_t factor);

  // An opaque 8-bit picture of it.
  void CopyTo(HostImage& image) const;

  // All rows, the top one first.
  CanvasPixel* Pixels() { return pixels_.data(); }
  // Null beyond the canvas.
  CanvasPixel* At(std::int32_t x, std::int32_t y);

 private:
  void Line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, const CanvasPixel& colour);

  std::int32_t width_;
  std::int32_t height_;
  std::vector<CanvasPixel> pixels_;
};

}  // namespace vblur::host
