// The name "-", which stands for the standard input where a picture is read and for the standard output where one is
// written. A file of that name is "./-".
#pragma once

#include <filesystem>
#include <string>

namespace vblur::host {

inline bool IsStandardStream(const std::filesystem::path& file) {
  return file.native() == "-";
}

// What messages call a file that is read or written.
inline std::string InputName(const std::filesystem::path& file) {
  return IsStandardStream(file) ? "standard input" : file.string();
}
inline std::string OutputName(const std::filesystem::path& file) {
  return IsStandardStream(file) ? "standard output" : file.string();
}

}  // namespace vblur::host
