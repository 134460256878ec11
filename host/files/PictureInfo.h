// What a picture file holds, from its header.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "host/files/Sample.h"

namespace vblur::host {

struct PictureInfo {
  std::string format;  // the file format's name, such as "png" or "openexr"
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t channels = 0;
  SampleKind samples = SampleKind::Unsigned8;
  ChannelChoice choice;

  // The default depth for rendering such a file.
  std::int32_t NaturalDepth() const { return samples == SampleKind::Unsigned8 ? 8 : 16; }
};

// Throws Failure (cannot read): no such file, not a file, or empty.
void RequirePictureFile(const std::filesystem::path& path);

// Throws Failure (cannot read): no such file, not a file, empty, not a picture, a picture without
// pixels or with more than 2^31 components.
PictureInfo ReadPictureInfo(const std::filesystem::path& path);

}  // namespace vblur::host
