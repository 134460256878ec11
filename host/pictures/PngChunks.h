// Chunks of PNG files that the picture library does not write, or not as they were.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <OpenImageIO/imageio.h>

namespace vblur::host {

// The signature and the header chunk. Chunks that stand before the pixels may follow.
constexpr std::size_t kPngHead = 33;

// Moves out of the description what the library would leave out or write otherwise, and returns it as chunks: Exif data
// (eXIf), texts beyond ASCII (iTXt), and for what the library would make of them two things of the source as they are
// stored: `colour`, chunks about its colours, and `exif`; empty: it has none.
std::string TakePngChunks(OIIO::ImageSpec& spec, const std::string& colour, const std::string& exif);

// Texts of a PNG file that are not UTF-8 are Latin-1, as its plain text chunks are; makes them UTF-8.
void MakePngTextsUtf8(OIIO::ImageSpec& spec);

}  // namespace vblur::host
