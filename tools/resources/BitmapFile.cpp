#include <cstddef>

#include "tools/resources/ResourceScript.h"

namespace vblur {
namespace {

void Append(std::string& file, std::uint32_t number, int bytes) {
  for (int i = 0; i < bytes; ++i)
    file += static_cast<char>(number >> (8 * i) & 0xFF);
}

}  // namespace

std::string BitmapFileName(const ModuleBitmap& bitmap) {
  return std::to_string(bitmap.id) + ".bmp";
}

std::string BitmapFile(const ModuleBitmap& bitmap) {
  constexpr std::uint32_t kHeaders = 14 + 40;
  const auto pixelBytes = static_cast<std::uint32_t>(bitmap.pixels.size());
  std::string file = "BM";
  Append(file, kHeaders + pixelBytes, 4);
  Append(file, 0, 4);
  Append(file, kHeaders, 4);
  Append(file, 40, 4);
  Append(file, static_cast<std::uint32_t>(bitmap.width), 4);
  Append(file, static_cast<std::uint32_t>(bitmap.height), 4);
  Append(file, 1, 2);   // planes
  Append(file, 32, 2);  // bits a pixel
  Append(file, 0, 4);   // uncompressed
  Append(file, pixelBytes, 4);
  for (int i = 0; i < 4; ++i)  // no resolution, no palette
    Append(file, 0, 4);
  // From the lowest row up; blue first.
  const auto rowBytes = static_cast<std::size_t>(4 * bitmap.width);
  for (std::size_t row = bitmap.pixels.size(); row != 0; row -= rowBytes) {
    const auto pixels = bitmap.pixels.subspan(row - rowBytes, rowBytes);
    for (std::size_t at = 0; at < rowBytes; at += 4) {
      for (const std::size_t component : {2u, 1u, 0u, 3u})
        file += static_cast<char>(pixels[at + component]);
    }
  }
  return file;
}

}  // namespace vblur
