// Whole numbers in the bytes of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vblur::host {

inline std::int64_t Byte(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

inline std::int64_t Big16(std::string_view bytes, std::size_t at) {
  return Byte(bytes, at) << 8 | Byte(bytes, at + 1);
}

inline std::int64_t Big32(std::string_view bytes, std::size_t at) {
  return Big16(bytes, at) << 16 | Big16(bytes, at + 2);
}

inline std::int64_t Little16(std::string_view bytes, std::size_t at) {
  return Byte(bytes, at) | Byte(bytes, at + 1) << 8;
}

inline std::int64_t Little32(std::string_view bytes, std::size_t at) {
  return Little16(bytes, at) | Little16(bytes, at + 2) << 16;
}

}  // namespace vblur::host
