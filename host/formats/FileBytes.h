// Bytes of a file, and whole numbers in them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

namespace vblur::host {

// Fewer bytes where the file ends before.
inline std::string ReadAt(std::istream& file, std::int64_t at, std::size_t count) {
  std::string bytes(count, '\0');
  file.clear();
  file.seekg(at);
  file.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, file.gcount())));
  return bytes;
}

inline std::int64_t Byte(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

inline std::int64_t Big16(std::string_view bytes, std::size_t at) {
  return Byte(bytes, at) << 8 | Byte(bytes, at + 1);
}

inline std::int64_t Big32(std::string_view bytes, std::size_t at) {
  return Big16(bytes, at) << 16 | Big16(bytes, at + 2);
}

// Four bytes, the highest one first.
inline std::string Big32Bytes(std::uint64_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes += static_cast<char>(value >> shift & 0xff);
  return bytes;
}

inline std::int64_t Little16(std::string_view bytes, std::size_t at) {
  return Byte(bytes, at) | Byte(bytes, at + 1) << 8;
}

inline std::int64_t Little32(std::string_view bytes, std::size_t at) {
  return Little16(bytes, at) | Little16(bytes, at + 2) << 16;
}

}  // namespace vblur::host
