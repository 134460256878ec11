// What a PNG, JPEG, TIFF or BMP file holds beside its pixels, as far as it may be passed on or has to be told as lost.
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

struct FileExtras {
  std::string profile;        // of its colours
  double pixelsPerInchX = 0;  // 0: not said
  double pixelsPerInchY = 0;
  int orientation = 1;
  bool hasPixelAspect = false;
  bool hasTexts = false;
  bool hasIptc = false;
  bool hasExif = false;  // of a TIFF file
  bool hasGps = false;
  bool hasOther = false;
  // Of a PNG file: its chunks of texts before the pixels, whole, one after the other.
  std::string pngTexts;
};

// `exif` is the file's block of Exif data; empty: none.
FileExtras ReadFileExtras(const std::filesystem::path& path, const std::string& format, const std::string& exif);

}  // namespace vblur::host
