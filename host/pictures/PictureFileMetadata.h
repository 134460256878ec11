// Metadata of a picture file, passed on to the output.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "host/files/OutputFormat.h"
#include "host/files/PictureInfo.h"
#include "host/light/PictureMetadata.h"

namespace vblur::host {

struct LibraryMetadata final : PictureMetadata {
  // The reader's description of the file as it was opened.
  OIIO::ImageSpec input;
  // The samples of the channels that the effect does not take (PictureInfo::passing), as they are stored: those of a
  // pixel side by side in their order, the data window alone, the top row first.
  std::vector<std::byte> passing;
};

// What the light library has read, as this one's reader describes it for files of other formats.
LibraryMetadata MetadataOf(const PictureMetadata& light);
// Those of this library's own reader; null for none.
inline const LibraryMetadata* OwnMetadata(const PictureMetadata* metadata) {
  return static_cast<const LibraryMetadata*>(metadata);
}

// An attribute's group; none for storage attributes, and for the default orientation and pixel aspect.
std::optional<MetadataGroup> GroupOf(const OIIO::ParamValue& attribute);
// Whether files of this format keep an attribute of theirs as a text, whatever its name: those of PNG files do.
bool IsTextOf(const OIIO::ParamValue& attribute, std::string_view format);
// The layouts of pixels that a colour profile is for; none for a damaged one.
SetOf<PixelLayout> LayoutsOfProfile(const OIIO::ParamValue& profile);

LibraryMetadata CollectMetadata(const OIIO::ImageSpec& input, const PictureInfo& info);
// Adds what an output of this layout and of the size that it has already may repeat: never how the source's pixels were
// stored, nor a colour profile that is not for them.
void ApplyMetadata(const LibraryMetadata& metadata, PixelLayout pixels, OIIO::ImageSpec& output,
                   const OutputFormat& format);
// Takes out the longest texts until files of the format hold all of them together; returns their names.
std::vector<std::string> TakeLongTexts(OIIO::ImageSpec& output, const OutputFormat& format);
// The same for so many bytes.
std::vector<std::string> TakeLongTexts(OIIO::ImageSpec& output, std::size_t most);

}  // namespace vblur::host
