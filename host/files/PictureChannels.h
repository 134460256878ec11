// Which channels of a file the effect gets.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/files/PictureInfo.h"

namespace vblur::host {

// Red, green, blue and alpha by name, in the layer that is asked for: "diffuse.R" is red in "diffuse". One of the three
// colours may be missing, and one alone is grey. Without these names the first channels that are not alpha. For a mask
// the channel that is asked for stands in place of all colours; without one the first of the file stands in place of
// red, and the others show whether alpha alone varies. `alpha` is the place of the channel that the format marks as
// alpha; -1: it marks none. Throws Failure (cannot read) with the names that there are.
ChannelChoice ChooseChannels(const std::filesystem::path& path, const std::vector<std::string>& names, int alpha,
                             const ReadChoice& choice);

// Whether the effect gets a channel.
bool Takes(const ChannelChoice& choice, int channel);
// Fills in, from `choice` and `all`, what follows from them: the number of channels, those that pass, and the kind of
// samples.
void DescribeChannels(PictureInfo& info);

// The layer of a channel and the dot behind it: "diffuse." of "diffuse.R"; empty for a channel in none.
std::string LayerPrefix(const std::string& channel);

}  // namespace vblur::host
