// Whether two file names mean the same file.
#pragma once

#include <filesystem>

namespace vblur::host {

// The name that a chain of links ends in, whether or not there is such a file; the path itself when it is no link.
std::filesystem::path EndOfLinks(std::filesystem::path path);

// The absolute path without links, `.` and `..`, for a file that may not exist; on Windows in one case.
std::filesystem::path RealPath(const std::filesystem::path& path);

// A name as it is compared with others: on Windows, where case makes no difference, in lower case.
std::filesystem::path InOneCase(std::filesystem::path path);

// RealPath of many files. Keeps the last folder, so the files of
// one folder cost one look-up each.
class RealPaths {
 public:
  std::filesystem::path Of(const std::filesystem::path& file);

 private:
  std::filesystem::path folder_;
  std::filesystem::path realFolder_;
};

}  // namespace vblur::host
