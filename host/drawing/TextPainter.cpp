#include "host/drawing/TextPainter.h"

#include <sstream>

namespace vblur::host {

std::int32_t TextPainter::Width(const std::string& text, const TextStyle& style) const {
  return text.empty() ? 0 : Measure(text, style);
}

void TextPainter::Paint(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                        const TextStyle& style) const {
  if (text.empty()) return;
  if (style.align == TextAlign::Right) x -= Width(text, style);
  if (style.align == TextAlign::Centre) x -= Width(text, style) / 2;
  Draw(canvas, x, y, text, style);
}

std::vector<std::string> TextPainter::Wrap(const std::string& text, const TextStyle& style, std::int32_t width) const {
  std::vector<std::string> lines;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::string longer = lines.empty() ? word : lines.back() + " " + word;
    if (!lines.empty() && Width(longer, style) <= width) {
      lines.back() = longer;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}

}  // namespace vblur::host
