#include "host/pictures/PictureFileHeader.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>

#include "host/pictures/FileBytes.h"
#include "host/pictures/JpegSegments.h"

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

// By its first chunk: a canvas, or a lossless or a lossy picture.
std::optional<HeaderSize> WebpSize(std::string_view bytes) {
  if (bytes.size() < 30) return std::nullopt;
  constexpr std::int64_t kMost = 0x3fff;
  const std::string_view chunk = bytes.substr(12, 4);
  if (chunk == "VP8X") return HeaderSize{1 + (Little32(bytes, 24) & 0xffffff), 1 + (Little32(bytes, 26) >> 8)};
  if (chunk == "VP8L") return HeaderSize{1 + (Little32(bytes, 21) & kMost), 1 + (Little32(bytes, 21) >> 14 & kMost)};
  if (chunk == "VP8 ") return HeaderSize{Little16(bytes, 26) & kMost, Little16(bytes, 28) & kMost};
  return std::nullopt;
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

// From behind the signature to the end.
ChunkFacts PngChunks(std::ifstream& file) {
  constexpr std::string_view kColour[] = {"sRGB", "gAMA", "cHRM"};
  constexpr std::string_view kText[] = {"tEXt", "zTXt", "iTXt", "tIME"};
  const auto isOf = [](std::string_view name, const auto& names) {
    return std::ranges::find(names, name) != std::end(names);
  };
  // A colour chunk that the format allows has at most 32 bytes.
  constexpr std::int64_t kLongestColour = 32;
  constexpr std::int64_t kLongestExif = 1 << 20;
  ChunkFacts facts;
  std::int64_t declared = 0;
  bool isFrame = false;
  bool isBehind = false;
  file.seekg(static_cast<std::streamoff>(kPngSignature.size()));
  std::string chunk(12, '\0');
  while (file.read(chunk.data(), 12)) {
    const std::string_view name = std::string_view(chunk).substr(4, 4);
    if (name == "IEND") break;
    isBehind = isBehind || name == "IDAT";
    if (isBehind && isOf(name, kText)) facts.unread = {"texts behind the pixels"};
    if (name == "acTL" && !isBehind) declared = Big32(chunk, 8);
    isFrame = isFrame || (name == "fcTL" && !isBehind);
    // What is left of its bytes, and its checksum.
    const std::int64_t left = Big32(chunk, 0);
    const bool isColour = isOf(name, kColour) && left <= kLongestColour;
    const bool isExif = name == "eXIf" && left <= kLongestExif;
    if (!isColour && !isExif) {
      file.seekg(left, std::ios::cur);
      continue;
    }
    std::string rest(static_cast<std::size_t>(left), '\0');
    if (!file.read(rest.data(), left)) break;
    if (isColour) facts.colourChunks += chunk + rest;
    if (isExif) facts.exif = (chunk + rest).substr(8, static_cast<std::size_t>(left));
  }
  // One more where the picture of the pixels is no frame itself.
  if (declared > 0)
    facts.frames = static_cast<std::int32_t>(std::min<std::int64_t>(declared + (isFrame ? 0 : 1), kMostFrames));
  return facts;
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
  if (bytes.substr(0, 4) == "RIFF" && bytes.substr(8, 4) == "WEBP") return WebpSize(bytes);
  return std::nullopt;
}

ChunkFacts FactsOfChunks(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string head(12, '\0');
  if (!file.read(head.data(), 12)) return {};
  if (head.substr(0, 4) == "RIFF" && head.substr(8) == "WEBP") return WebpChunks(file);
  if (head.substr(0, 8) == kPngSignature) return PngChunks(file);
  ChunkFacts facts;
  if (head.substr(0, 3) != "\xff\xd8\xff") return facts;
  file.seekg(2);
  JpegFacts jpeg = FactsOfJpeg(file);
  facts.unread = std::move(jpeg.unread);
  facts.exif = std::move(jpeg.exif);
  return facts;
}

}  // namespace vblur::host
