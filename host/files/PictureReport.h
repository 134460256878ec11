// What a picture file holds, and what an output would not hold of it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/files/OutputFormat.h"
#include "host/files/PictureInfo.h"

namespace vblur::host {

struct PictureReport {
  PictureInfo info;
  std::string compression;       // by the format's name; empty: none, or not told
  bool associatedAlpha = false;  // the file declares its colours as premultiplied
  SetOf<MetadataGroup> metadata;
  std::vector<std::pair<std::string, std::string>> attributes;  // names and values, in the order of the file
};

// Throws as ReadPictureInfo does.
PictureReport ReportPicture(const std::filesystem::path& path);

// What an output of this format, rendered at this depth from the file, lacks of what the file holds: "2 further
// pictures", "alpha", "channel Z", "Exif data".
std::vector<std::string> LossesOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                                  std::int32_t depth);

// The type, pixel layout and compression that such an output has.
SampleType OutputTypeOf(const PictureInfo& source, const OutputFormat& format, const OutputStorage& storage);
std::string OutputCompressionOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage);

std::string NameOf(PixelLayout layout);

}  // namespace vblur::host
