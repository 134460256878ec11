// Whether two file names mean the same file.
#pragma once

#include <filesystem>

namespace vblur::host {

// The name that a chain of links ends in, whether or not there is such a file; the path itself when it is no link.
std::filesystem::path EndOfLinks(std::filesystem::path path);

// Absolute paths without links, `.` and `..`, for files that may not exist. Keeps the last folder, so the files of
// one folder cost one look-up each.
class RealPaths {
 public:
  std::filesystem::path Of(const std::filesystem::path& file);

 private:
  std::filesystem::path folder_;
  std::filesystem::path realFolder_;
};

}  // namespace vblur::host
