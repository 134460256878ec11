// TIFF files whose least value is white. The picture library turns their samples of 8 bits, those of alpha and other
// channels too, and leaves all others as they are stored.
#pragma once

#include <cstddef>
#include <filesystem>

#include <OpenImageIO/imageio.h>

namespace vblur::host {

// Throws Failure (cannot read) for samples that have no greatest value, which would be black: floats and signed ones.
void RequireBlack(const std::filesystem::path& path, const OIIO::ImageInput& file);

// Whether what the library gives is not yet what the file shows.
bool NeedsTurning(const OIIO::ImageInput& file);

// Makes it so, in whole pixels as the library gives them unconverted. The grey is the first channel.
void TurnValues(const OIIO::ImageSpec& spec, std::size_t pixels, std::byte* samples);

}  // namespace vblur::host
