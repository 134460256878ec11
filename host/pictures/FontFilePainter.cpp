#include "host/pictures/FontFilePainter.h"

#include <algorithm>
#include <array>
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

FontFilePainter::FontFilePainter(std::span<const std::filesystem::path> folders)
    : regular_(FindFont(folders, "DejaVuSans.ttf")), bold_(FindFont(folders, "DejaVuSans-Bold.ttf")) {
  for (const std::string& font : {regular_, bold_}) {
    if (OIIO::ImageBufAlgo::text_size("x", 16, font).defined()) continue;
    Refuse(ExitCode::CannotRead, font,
           "the picture library cannot draw text with this font; it must be built with FreeType");
  }
}

std::int32_t FontFilePainter::Measure(const std::string& text, const TextStyle& style) const {
  return OIIO::ImageBufAlgo::text_size(text, style.size, FontOf(style)).xend;
}

// The library centres a line by its ink, so lines of equal width would not align.
void FontFilePainter::Draw(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                           const TextStyle& style) const {
  const std::array<float, 4> colour{style.colour.red, style.colour.green, style.colour.blue, 1.0f};
  OIIO::ImageBuf onCanvas(OIIO::ImageSpec(canvas.Width(), canvas.Height(), 4, OIIO::TypeDesc::UINT8), canvas.Pixels());
  OIIO::ImageBufAlgo::render_text(onCanvas, x, y, text, style.size, FontOf(style), colour);
}

}  // namespace vblur::host
