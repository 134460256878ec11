// Draws text; with which font, the system's painter says.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/drawing/Canvas.h"

namespace vblur::host {

enum class TextWeight { Regular, Bold };
enum class TextAlign { Left, Centre, Right };

struct TextStyle {
  std::int32_t size = 14;  // in pixels, from one line to the next about 1.3 times as much
  Colour colour;
  TextWeight weight = TextWeight::Regular;
  TextAlign align = TextAlign::Left;
};

class TextPainter {
 public:
  virtual ~TextPainter() = default;
  TextPainter(const TextPainter&) = delete;
  TextPainter& operator=(const TextPainter&) = delete;

  std::int32_t Width(const std::string& text, const TextStyle& style) const;
  // One line; x is its left end, middle or right end by the style's alignment, y its baseline.
  void Paint(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text, const TextStyle& style) const;
  // Breaks a text at spaces into lines of at most this width; a longer word keeps a line of its own.
  std::vector<std::string> Wrap(const std::string& text, const TextStyle& style, std::int32_t width) const;

 protected:
  TextPainter() = default;

 private:
  // Of a text that is not empty; x is its left end.
  virtual std::int32_t Measure(const std::string& text, const TextStyle& style) const = 0;
  virtual void Draw(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                    const TextStyle& style) const = 0;
};

}  // namespace vblur::host
