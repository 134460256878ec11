// Draws text with a system font.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "host/pictures/Canvas.h"

namespace vblur::host {

enum class TextWeight { Regular, Bold };
enum class TextAlign { Left, Centre, Right };

struct TextStyle {
  std::int32_t size = 14;  // in pixels, from one line to the next about 1.3 times as much
  Colour colour;
  TextWeight weight = TextWeight::Regular;
  TextAlign align = TextAlign::Left;
};

// Where Linux systems keep the font.
std::span<const std::filesystem::path> FontFolders();

class TextPainter {
 public:
  // Throws Failure (cannot read) that names the package to install when the font is in none of the
  // folders, or when the picture library cannot draw text.
  explicit TextPainter(std::span<const std::filesystem::path> folders = FontFolders());

  std::int32_t Width(const std::string& text, const TextStyle& style) const;
  // One line; x is its left end, middle or right end by the style's alignment, y its baseline.
  void Paint(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text, const TextStyle& style) const;
  // Breaks a text at spaces into lines of at most this width; a longer word keeps a line of its own.
  std::vector<std::string> Wrap(const std::string& text, const TextStyle& style, std::int32_t width) const;

 private:
  const std::string& FontOf(const TextStyle& style) const {
    return style.weight == TextWeight::Bold ? bold_ : regular_;
  }

  std::string regular_;
  std::string bold_;
};

}  // namespace vblur::host
