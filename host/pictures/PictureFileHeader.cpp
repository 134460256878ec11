#include "host/pictures/PictureFileHeader.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>

#include "host/pictures/FileBytes.h"

namespace vblur::host {

namespace {

// The reference grid and its offset, behind the markers of a codestream's begin and of its size.
std::optional<HeaderSize> Jpeg2000Size(std::string_view bytes) {
  constexpr std::string_view kMarkers("\xff\x4f\xff\x51", 4);
  const auto at = bytes.find(kMarkers);
  if (at == std::string_view::npos || bytes.size() < at + 24) return std::nullopt;
  return HeaderSize{Big32(bytes, at + 8) - Big32(bytes, at + 16), Big32(bytes, at + 12) - Big32(bytes, at + 20)};
}

// The largest of the file's pictures and their tiles.
std::optional<HeaderSize> HeifSize(std::string_view bytes) {
  std::optional<HeaderSize> largest;
  for (auto at = bytes.find("ispe"); at != std::string_view::npos; at = bytes.find("ispe", at + 4)) {
    if (bytes.size() < at + 16) break;
    const HeaderSize size{Big32(bytes, at + 8), Big32(bytes, at + 12)};
    if (!largest || size.width > largest->width || size.height > largest->height) largest = size;
  }
  return largest;
}

std::string FirstBytes(const std::filesystem::path& path) {
  constexpr std::streamsize kBytes = 1 << 16;
  std::string bytes(static_cast<std::size_t>(kBytes), '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(bytes.data(), kBytes);
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, file.gcount())));
  return bytes;
}

constexpr std::string_view kPngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr std::int32_t kMostFrames = 1000;

// From behind the file's head.
ChunkFacts WebpChunks(std::ifstream& file) {
  constexpr std::pair<std::string_view, std::string_view> kMetadata[] = {
      {"ICCP", "colour profile"}, {"EXIF", "Exif data"}, {"XMP ", "XMP data"}};
  ChunkFacts facts;
  std::int32_t frames = 0;
  std::string chunk(8, '\0');
  while (frames < kMostFrames && file.read(chunk.data(), 8)) {
    const std::string_view name = std::string_view(chunk).substr(0, 4);
    if (name == "ANMF") ++frames;
    for (const auto& [id, kind] : kMetadata) {
      const bool isNew = std::ranges::find(facts.unread, kind) == facts.unread.end();
      if (name == id && isNew) facts.unread.emplace_back(kind);
    }
    // Chunks are padded to an even length.
    const std::int64_t bytes = Little32(chunk, 4);
    file.seekg(bytes + bytes % 2, std::ios::cur);
  }
  facts.frames = std::max(1, frames);
  return facts;
}

// The number that is declared before the pixels, and one more where the picture of the pixels is no frame itself.
std::int32_t CountPngFrames(std::ifstream& file) {
  std::int64_t declared = 0;
  bool isFrame = false;
  file.seekg(static_cast<std::streamoff>(kPngSignature.size()));
  std::string chunk(12, '\0');
  while (file.read(chunk.data(), 12)) {
    const std::string_view name = std::string_view(chunk).substr(4, 4);
    if (name == "IDAT" || name == "IEND") break;
    if (name == "acTL") declared = Big32(chunk, 8);
    isFrame = isFrame || name == "fcTL";
    // What is left of its bytes, and its checksum.
    file.seekg(Big32(chunk, 0), std::ios::cur);
  }
  if (declared == 0) return 1;
  return static_cast<std::int32_t>(std::min<std::int64_t>(declared + (isFrame ? 0 : 1), kMostFrames));
}

}  // namespace

std::optional<HeaderSize> SizeFromHeader(const std::filesystem::path& path) {
  const std::string kept = FirstBytes(path);
  const std::string_view bytes(kept);
  // Its reader looks at three letters.
  if (bytes.size() >= 10 && bytes.substr(0, 3) == "GIF") return HeaderSize{Little16(bytes, 6), Little16(bytes, 8)};
  if (bytes.size() < 12) return std::nullopt;
  if (bytes.substr(0, 2) == "\xff\x4f" || bytes.substr(4, 4) == "jP  ") return Jpeg2000Size(bytes);
  if (bytes.substr(4, 4) == "ftyp") return HeifSize(bytes);
  return std::nullopt;
}

ChunkFacts FactsOfChunks(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string head(12, '\0');
  if (!file.read(head.data(), 12)) return {};
  if (head.substr(0, 4) == "RIFF" && head.substr(8) == "WEBP") return WebpChunks(file);
  ChunkFacts facts;
  if (head.substr(0, 8) == kPngSignature) facts.frames = CountPngFrames(file);
  return facts;
}

}  // namespace vblur::host
