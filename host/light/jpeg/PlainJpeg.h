// Which JPEG files are plain: those whose every segment is read here as the full picture library reads it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vblur::host {

struct PlainJpeg {
  std::string exif;               // empty: none
  std::string description;        // a comment; empty: none
  bool isDescribedFirst = false;  // before the Exif data
  std::string iptc;               // a segment, behind both; empty: none
};

// Of a file to open, by its segments before the pixels. Nothing for a file that is not plain: one with XMP, several
// comments, segments of single programs, four components, other than baseline and progressive coding, or with a second
// picture behind the first.
std::optional<PlainJpeg> PlainJpegOf(const std::filesystem::path& file);

}  // namespace vblur::host
