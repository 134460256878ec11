// Which TIFF files are plain: those whose every tag is read here as the full picture library reads it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/light/LightMetadata.h"

namespace vblur::host {

struct PlainTiff {
  std::int32_t width = 0;
  std::int32_t height = 0;
  int channels = 0;
  int bits = 8;
  bool isFloat = false;
  std::int32_t tileWidth = 0;  // 0: it consists of strips
  std::int32_t tileHeight = 0;
  bool associatedAlpha = false;
  LightAttributes attributes;
  // Kinds of metadata that the full library names as not read.
  std::vector<std::string> unread;
};

// Of a file to open, by its directory of tags alone. Nothing for a file that is not plain: one of several directories,
// of planes, of other samples, colours and compressions than the usual ones, or with Exif, IPTC or XMP data.
std::optional<PlainTiff> PlainTiffOf(const std::filesystem::path& file);

// The tag of a text by its name in the full library; 0 for none.
std::uint16_t TagOfTiffText(const std::string& name);
// The name of a compression in the full library; empty for one that is not plain.
std::string PlainCompressionOf(std::int64_t number);
// The same by its name; 0 for none.
std::uint16_t TiffCompressionOf(const std::string& name);

}  // namespace vblur::host
