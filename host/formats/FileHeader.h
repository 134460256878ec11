// What the header of a PNG, JPEG, TIFF or BMP file says of its pixels, before anything is decoded.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vblur::host {

// Of TIFF files, by the names of the output options and of OpenImageIO.
inline constexpr std::array<std::string_view, 9> kTiffCompressions{"none",  "ccittrle", "ccittfax3", "ccittfax4", "lzw",
                                                                   "ojpeg", "jpeg",     "zip",       "packbits"};
// The name of the number that stands in a file; empty for others.
std::string NameOfTiffCompression(std::int64_t number);

struct FileHeader {
  std::string format;  // "png", "jpeg", "tiff" or "bmp"; empty: none of them
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::int32_t channels = 0;  // of a pixel as the file stores it; a palette counts as one
  std::int32_t bits = 0;      // of a channel
  bool isGrey = false;
  bool hasAlpha = false;
  bool isPalette = false;
  bool hasInks = false;
  bool associatedAlpha = false;
  bool hasUnknownChannel = false;  // the last one, of which a TIFF file does not say that it is alpha
  std::int32_t sampleFormat = 1;   // of a TIFF file: 1 unsigned, 2 signed, 3 floats
  std::int64_t meaning = 0;        // of the values of a TIFF file: up to 3 and 5 are grey, colours, a palette and inks
  bool isWhiteLeast = false;       // the least value of its grey is white
  std::int32_t pictures = 1;       // of a TIFF file: its directories, each once
  // Of a TIFF file; 0: it has none.
  bool isPlanar = false;  // all values of a channel stand together
  bool isBig = false;     // numbers begin with their high bytes
  std::int32_t tileWidth = 0;
  std::int32_t tileHeight = 0;
  std::string compression{};  // of a TIFF file, by the name of the output options, else empty
  // All that the header says where pixels are lies in the file.
  bool isWhole = true;
  // Of a TIFF file with a palette: its colours as 0xffRRGGBB.
  std::vector<std::uint32_t> palette{};
};

FileHeader ReadFileHeader(const std::filesystem::path& path);

}  // namespace vblur::host
