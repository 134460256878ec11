// What a PNG, JPEG, TIFF or BMP file holds beside its pixels, as far as it may be passed on or has to be told as lost.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/formats/PictureTexts.h"
#include "host/formats/TiffTags.h"

namespace vblur::host {

// Pixels in a metre, or in nothing: then their proportion alone is meant. 0: not said.
struct PngScale {
  double x = 0;
  double y = 0;
  bool isInMetres = false;
};

struct FileExtras {
  std::string profile;        // of its colours
  double pixelsPerInchX = 0;  // 0: not said
  double pixelsPerInchY = 0;
  int orientation = 1;
  PngScale pngScale;  // of a PNG file
  bool hasPixelAspect = false;
  bool hasCamera = false;  // of a TIFF file: the camera's maker and model
  bool hasGps = false;
  // Names of more that another file of its format has as it is, each once: of further texts, and "oFFs".
  std::set<std::string> own;
  // Beside those of Exif data, and those of it. The first comment of a JPEG file is its description.
  PictureTexts texts;
  PictureTexts exifTexts;
  // Names of those of either, of a TIFF file or of Exif data, that are several strings, of which this is the first.
  std::vector<std::string> furtherTexts;
  // Of a JPEG or TIFF file: its IPTC data.
  std::string iptc;
  // Of a TIFF file: kinds of data that do not pass to any file, each once, as in "Exif data" and "TIFF tag 65000".
  std::vector<std::string> unread;
  // Of a TIFF file: its tags that another one has as they are (texts, the orientation, a resolution without a unit),
  // for AddTiffTags.
  std::map<std::uint16_t, TiffTag> tiffTags;
  // Of a PNG file: its chunks of texts, of its time and its place, and of a resolution without a unit, that stand
  // before the pixels, whole, one after the other.
  std::string pngChunks;
};

// `exif` is the file's block of Exif data; empty: none.
FileExtras ReadFileExtras(const std::filesystem::path& path, const std::string& format, const std::string& exif);

}  // namespace vblur::host
