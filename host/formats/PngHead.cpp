#include "host/formats/PngHead.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string_view>

#include <zlib.h>

#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

bool HasChunk(std::string_view chunks, std::string_view name) {
  for (std::size_t at = 0; at + 8 <= chunks.size(); at += static_cast<std::size_t>(Big32(chunks, at)) + 12) {
    if (chunks.substr(at + 4, 4) == name) return true;
  }
  return false;
}

}  // namespace

std::string PngChunk(const std::string& name, const std::string& data) {
  const std::string checked = name + data;
  const auto sum = ::crc32(0, reinterpret_cast<const Bytef*>(checked.data()), static_cast<uInt>(checked.size()));
  return Big32Bytes(data.size()) + checked + Big32Bytes(sum);
}

bool IsIntactPngChunk(std::string_view chunk) {
  constexpr std::size_t kLeast = 12;
  if (chunk.size() < kLeast) return false;
  const std::size_t end = chunk.size() - 4;
  const auto sum = ::crc32(0, reinterpret_cast<const Bytef*>(chunk.data() + 4), static_cast<uInt>(end - 4));
  return Big32(chunk, end) == static_cast<std::int64_t>(sum);
}

std::string DamagedPngChunk(const std::filesystem::path& path) {
  constexpr std::int64_t kPart = 1 << 20;
  std::ifstream file(path, std::ios::binary);
  for (std::int64_t at = 8;;) {
    const std::string head = ReadAt(file, at, 8);
    if (head.size() < 8) return {};
    auto sum = ::crc32(0, reinterpret_cast<const Bytef*>(head.data() + 4), 4);
    const std::int64_t end = at + 8 + Big32(head, 0);
    for (at += 8; at < end;) {
      const std::string part = ReadAt(file, at, static_cast<std::size_t>(std::min(kPart, end - at)));
      if (part.empty()) return {};
      sum = ::crc32(sum, reinterpret_cast<const Bytef*>(part.data()), static_cast<uInt>(part.size()));
      at += static_cast<std::int64_t>(part.size());
    }
    const std::string stored = ReadAt(file, end, 4);
    if (stored.size() < 4) return {};
    std::string name = head.substr(4);
    // Those of small letters say no more than readers need not know, but for transparency.
    const bool isOfPixels = (name[0] >= 'A' && name[0] <= 'Z') || name == "tRNS";
    if (isOfPixels && Big32(stored, 0) != static_cast<std::int64_t>(sum)) return name;
    if (name == "IEND") return {};
    at = end + 4;
  }
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
  const bool hasScale = HasChunk(chunks, "pHYs");
  for (std::size_t at = kHeader; at + 8 <= head.size();) {
    const std::string_view name = std::string_view(head).substr(at + 4, 4);
    if (name == "IDAT") return changed + head.substr(at);
    const auto length = static_cast<std::size_t>(Big32(head, at)) + 12;
    const bool isOwn =
        name == "sRGB" || name == "gAMA" || name == "cHRM" || name == "iCCP" || (name == "pHYs" && hasScale);
    if (!isOwn) changed += head.substr(at, length);
    at += length;
  }
  return head;
}

}  // namespace vblur::host
