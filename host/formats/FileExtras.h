// What a PNG, JPEG, TIFF or BMP file holds beside its pixels, as far as it may be passed on or has to be told as lost.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "host/formats/TiffTags.h"

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
  bool hasOther = false;  // of a TIFF file: more than its pixels need, and all this
  // Of a TIFF file: its tags that another one has as they are (texts, the orientation, IPTC data), for AddTiffTags.
  std::map<std::uint16_t, TiffTag> tiffTags;
  // Of a PNG file: its chunks of texts before the pixels, whole, one after the other.
  std::string pngTexts;
};

// `exif` is the file's block of Exif data; empty: none.
FileExtras ReadFileExtras(const std::filesystem::path& path, const std::string& format, const std::string& exif);

}  // namespace vblur::host
