#include "host/formats/PngHead.h"

#include <string_view>

#include <zlib.h>

#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

std::string Big32Bytes(std::size_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes.push_back(static_cast<char>(value >> shift & 0xff));
  return bytes;
}

}  // namespace

std::string PngChunk(const std::string& name, const std::string& data) {
  const std::string checked = name + data;
  const auto sum = ::crc32(0, reinterpret_cast<const Bytef*>(checked.data()), static_cast<uInt>(checked.size()));
  return Big32Bytes(data.size()) + checked + Big32Bytes(sum);
}

std::string PngProfileChunk(const std::string& profile) {
  uLongf length = ::compressBound(static_cast<uLong>(profile.size()));
  std::string packed(length, '\0');
  ::compress(reinterpret_cast<Bytef*>(packed.data()), &length, reinterpret_cast<const Bytef*>(profile.data()),
             static_cast<uLong>(profile.size()));
  packed.resize(length);
  // Its name, and how it is packed.
  return PngChunk("iCCP", "ICC profile" + std::string(2, '\0') + packed);
}

std::string WithPngChunks(const std::string& head, const std::string& chunks) {
  constexpr std::size_t kHeader = 33;
  std::string changed = head.substr(0, kHeader) + chunks;
  for (std::size_t at = kHeader; at + 8 <= head.size();) {
    const std::string_view name = std::string_view(head).substr(at + 4, 4);
    if (name == "IDAT") return changed + head.substr(at);
    const auto length = static_cast<std::size_t>(Big32(head, at)) + 12;
    const bool isOwn = name == "sRGB" || name == "gAMA" || name == "cHRM" || name == "iCCP";
    if (!isOwn) changed += head.substr(at, length);
    at += length;
  }
  return head;
}

}  // namespace vblur::host
