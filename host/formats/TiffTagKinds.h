// Which tags of a TIFF file are more than its pixels.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "host/formats/TiffTags.h"

namespace vblur::host {

// Whether a tag is about how pixels are stored, which an output has of its own, or its meaning is read or told
// otherwise: the resolution, the colour profile, Exif and GPS data.
bool IsTiffTagOfPixels(std::uint16_t tag);

// Of a picture: turned and mirrored in one of eight ways.
bool IsOrientation(std::int64_t number);
// What is told of an orientation that is none, which no output gets: "orientation 9 (none of 1 to 8)".
std::string NameOfWrongOrientation(std::int64_t number);

// Names of tags for people, as in "XMP data" and "TIFF tags 42112, 65000".
std::vector<std::string> NamesOfTiffTags(std::span<const std::uint16_t> tags);

// Tags that OpenImageIO gives and writes, or that are told by what they hold; it passes over all others.
inline constexpr auto kReadTiffTags =
    std::to_array<std::uint16_t>({269, 270, 271, 272, 274, 305, 306, 315, 316, 33432, 33723});

// Kinds of data of the first picture of a TIFF file, by these names, that are neither of pixels nor among `read`. None
// of other files.
std::vector<std::string> OtherTiffTags(const std::filesystem::path& path, std::span<const std::uint16_t> read);

// Names of the texts of a TIFF file or of a block of Exif data that are several strings, of which readers give the
// first.
std::vector<std::string> NamesOfFurtherTexts(const TiffTags::Source& source);

}  // namespace vblur::host
