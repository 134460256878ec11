// Which JPEG files are plain: those whose every segment is read here as the full picture library reads it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vblur::host {

// Exif data that say that the colours are those of sRGB, and nothing else, as the full library writes them into a file
// that it makes of a JPEG file without any.
extern const std::string kExifOfSrgb;
// The same without a field, of files that are made of others.
extern const std::string kExifOfNothing;

struct PlainJpeg {
  std::string exif;         // one of these, or empty
  std::string description;  // a comment; empty: none
};

// Of a file to open, by its segments before the pixels. Nothing for a file that is not plain: one with other Exif data,
// IPTC, XMP, several comments, segments of single programs, four components, other than baseline and progressive
// coding, or with a second picture behind the first.
std::optional<PlainJpeg> PlainJpegOf(const std::filesystem::path& file);

}  // namespace vblur::host
