// The directory of a TIFF file, written anew.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "host/formats/TiffTags.h"

namespace vblur::host {

// Gives the first picture of a file whose numbers begin with their low bytes ("II") these tags, of bytes in that order,
// in place of its own of the same numbers. What is behind its end then is a new directory. False when the file is none
// of the kind, would have 4 GiB, or cannot be read or written.
bool AddTiffTags(const std::filesystem::path& file, const std::map<std::uint16_t, TiffTag>& tags);

// The same of a block of Exif data, of either order, which is the order of the tags' bytes too. An empty one becomes
// one of these tags alone, in the order of "II". Empty where the block is damaged.
std::string WithTiffTags(const std::string& block, const std::map<std::uint16_t, TiffTag>& tags);

}  // namespace vblur::host
