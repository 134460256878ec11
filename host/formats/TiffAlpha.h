// What a TIFF file says of its fourth channel, changed in place.
#pragma once

#include <filesystem>

namespace vblur::host {

// Values of the tag ExtraSamples.
enum class TiffAlpha { Premultiplied = 1, Straight = 2 };

// Sets what the first picture of a file in this machine's byte order declares. False when the file has no such tag with
// one value, or cannot be changed.
bool SetTiffAlphaMeaning(const std::filesystem::path& file, TiffAlpha meaning);

}  // namespace vblur::host
