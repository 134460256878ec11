// Which channels of a file the effect gets.
#pragma once

#include <filesystem>
#include <string>

#include <OpenImageIO/imageio.h>

#include "host/files/PictureInfo.h"

namespace vblur::host {

// Red, green, blue and alpha by name, in the layer that is asked for: "diffuse.R" is red in "diffuse". One of the three
// colours may be missing, and one alone is grey. Without these names the first channels that are not alpha. For a mask
// the channel that is asked for stands in place of all colours; without one the first of the file stands in place of
// red, and the others show whether alpha alone varies. Throws Failure (cannot read) with the names that there are.
ChannelChoice ChooseChannels(const std::filesystem::path& path, const OIIO::ImageSpec& spec, const ReadChoice& choice);

// The layer of a channel and the dot behind it: "diffuse." of "diffuse.R"; empty for a channel in none.
std::string LayerPrefix(const std::string& channel);

}  // namespace vblur::host
