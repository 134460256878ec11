// Draws text with a font of the system, by OpenImageIO.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "host/drawing/TextPainter.h"

namespace vblur::host {

// Where Linux systems keep the font.
std::span<const std::filesystem::path> FontFolders();

class FontFilePainter final : public TextPainter {
 public:
  // Throws Failure (cannot read) that names the package to install when the font is in none of the
  // folders, or when the picture library cannot draw text.
  explicit FontFilePainter(std::span<const std::filesystem::path> folders = FontFolders());

 private:
  std::int32_t Measure(const std::string& text, const TextStyle& style) const override;
  void Draw(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
            const TextStyle& style) const override;
  const std::string& FontOf(const TextStyle& style) const {
    return style.weight == TextWeight::Bold ? bold_ : regular_;
  }

  std::string regular_;
  std::string bold_;
};

}  // namespace vblur::host
