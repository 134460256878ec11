// Exif data in a text of a PNG file, as programs wrote them before there was a chunk of their own.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vblur::host {

// As many bytes of a chunk's data as tell it.
constexpr std::size_t kExifKeyword = 22;
// Whether the data of a chunk of texts begins as such a text, which the picture library takes as Exif data.
bool IsExifText(std::string_view data);

// Of more bytes there is no such text.
constexpr std::size_t kLongestExifText = std::size_t{4} << 20;
// The block of Exif data in the data of a chunk of this name. Nothing for a damaged one, and for one of more than half
// as many bytes.
std::optional<std::string> ExifOfText(std::string_view name, std::string_view data);

}  // namespace vblur::host
