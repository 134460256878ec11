// The name "-", which stands for the standard input where a picture is read and for the standard output where one is
// written. A file of that name is "./-".
#pragma once

#include <filesystem>
#include <string>

#include "host/base/Utf8.h"

namespace vblur::host {

inline bool IsStandardStream(const std::filesystem::path& file) {
  return file == "-";
}
inline bool IsStandardStream(const std::string& name) {
  return name == "-";
}

// What messages call a file that is read or written.
inline std::string InputName(const std::filesystem::path& file) {
  return IsStandardStream(file) ? "standard input" : Utf8Of(file);
}
inline std::string OutputName(const std::filesystem::path& file) {
  return IsStandardStream(file) ? "standard output" : Utf8Of(file);
}

}  // namespace vblur::host
