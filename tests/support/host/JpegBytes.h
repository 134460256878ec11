// Segments of JPEG files, put together for the tests.
#pragma once

#include <string>

namespace vblur::host {

inline std::string JpegSegment(unsigned char marker, const std::string& data) {
  using namespace std::string_literals;
  const std::size_t length = data.size() + 2;
  return "\xff"s + static_cast<char>(marker) + static_cast<char>(length >> 8) + static_cast<char>(length & 0xff) + data;
}

inline std::string ExifSegment(const std::string& block) {
  using namespace std::string_literals;
  return JpegSegment(0xe1, "Exif\0\0"s + block);
}

inline std::string CommentSegment() {
  return JpegSegment(0xfe, "comment");
}

}  // namespace vblur::host
