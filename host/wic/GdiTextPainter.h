// Draws text with a font of Windows.
#pragma once

#include <memory>

#include "host/drawing/TextPainter.h"

namespace vblur::host {

class GdiTextPainter final : public TextPainter {
 public:
  // Throws Failure (cannot read) when the system draws no text.
  GdiTextPainter();
  ~GdiTextPainter() override;

 private:
  struct Fonts;

  std::int32_t Measure(const std::string& text, const TextStyle& style) const override;
  void Draw(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
            const TextStyle& style) const override;

  std::unique_ptr<Fonts> fonts_;
};

}  // namespace vblur::host
