#include "host/pictures/TextPainter.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <system_error>

#include <OpenImageIO/imagebufalgo.h>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

std::string FindFont(std::span<const std::filesystem::path> folders, const std::string& name) {
  std::string searched;
  for (const auto& folder : folders) {
    std::error_code error;
    if (std::filesystem::is_regular_file(folder / name, error)) return (folder / name).string();
    if (!searched.empty()) searched += ", ";
    searched += folder.string();
  }
  Refuse(
      ExitCode::CannotRead, name,
      "cannot find this font in " + searched + "; install the package fonts-dejavu-core (elsewhere dejavu-sans-fonts)");
}

}  // namespace

std::span<const std::filesystem::path> FontFolders() {
  static const std::array<std::filesystem::path, 5> folders = {
      "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/dejavu-sans-fonts", "/usr/share/fonts/dejavu",
      "/usr/share/fonts/TTF", "/usr/local/share/fonts"};
  return folders;
}

TextPainter::TextPainter(std::span<const std::filesystem::path> folders)
    : regular_(FindFont(folders, "DejaVuSans.ttf")), bold_(FindFont(folders, "DejaVuSans-Bold.ttf")) {
  for (const std::string& font : {regular_, bold_}) {
    if (OIIO::ImageBufAlgo::text_size("x", 16, font).defined()) continue;
    Refuse(ExitCode::CannotRead, font,
           "the picture library cannot draw text with this font; it must be built with FreeType");
  }
}

std::int32_t TextPainter::Width(const std::string& text, const TextStyle& style) const {
  if (text.empty()) return 0;
  return OIIO::ImageBufAlgo::text_size(text, style.size, FontOf(style)).xend;
}

void TextPainter::Paint(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                        const TextStyle& style) const {
  if (text.empty()) return;
  // The library centres a line by its ink, so lines of equal width would not align.
  if (style.align == TextAlign::Right) x -= Width(text, style);
  if (style.align == TextAlign::Centre) x -= Width(text, style) / 2;
  const std::array<float, 4> colour{style.colour.red, style.colour.green, style.colour.blue, 1.0f};
  OIIO::ImageBufAlgo::render_text(canvas.Buffer(), x, y, text, style.size, FontOf(style), colour);
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
