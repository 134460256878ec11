// What a PNG, JPEG, TIFF or BMP file says beside its pixels, as names and values for people.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace vblur::host {

using FileAttributes = std::vector<std::pair<std::string, std::string>>;

// By the names that OpenImageIO gives them: texts, the resolution, the orientation, and the known fields of Exif data.
// `exif` is the file's block of Exif data; empty: none. The fields of IPTC and XMP data are not among them.
FileAttributes ReadFileAttributes(const std::filesystem::path& path, const std::string& format,
                                  const std::string& exif);

}  // namespace vblur::host
