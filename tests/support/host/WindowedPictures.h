// OpenEXR files whose data window is not their display window.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/files/PictureInfo.h"
#include "tests/support/host/RawPictures.h"

namespace vblur::host {

inline OIIO::ImageSpec WindowedSpec(const FileWindow& data, const FileWindow& display,
                                    const std::vector<std::string>& channels) {
  OIIO::ImageSpec spec(data.width, data.height, static_cast<int>(channels.size()), OIIO::TypeDesc::FLOAT);
  spec.x = data.x;
  spec.y = data.y;
  spec.full_x = display.x;
  spec.full_y = display.y;
  spec.full_width = display.width;
  spec.full_height = display.height;
  spec.channelnames = channels;
  for (std::size_t c = 0; c < channels.size(); ++c) {
    if (channels[c] == "A") spec.alpha_channel = static_cast<int>(c);
  }
  return spec;
}

// Every sample of the data window has this value.
inline void WriteWindowed(const std::filesystem::path& path, const FileWindow& data, const FileWindow& display,
                          const std::vector<std::string>& channels, float value = 1.0f) {
  const auto count = static_cast<std::size_t>(data.width) * static_cast<std::size_t>(data.height) * channels.size();
  WriteRaw(path, "openexr", WindowedSpec(data, display, channels), std::vector<float>(count, value));
}

}  // namespace vblur::host
