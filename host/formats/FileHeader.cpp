#include "host/formats/FileHeader.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <utility>
#include <vector>

#include "host/formats/FileBytes.h"
#include "host/formats/TiffTags.h"

namespace vblur::host {

namespace {

class File {
 public:
  explicit File(const std::filesystem::path& path) : file_(path, std::ios::binary) {
    file_.seekg(0, std::ios::end);
    length_ = std::max<std::int64_t>(0, file_.tellg());
  }

  std::int64_t Length() const { return length_; }
  // Fewer bytes at the end of the file.
  std::string Read(std::int64_t at, std::size_t count) {
    if (at < 0 || at >= length_) return {};
    std::string bytes(std::min(count, static_cast<std::size_t>(length_ - at)), '\0');
    file_.clear();
    file_.seekg(at);
    file_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, file_.gcount())));
    return bytes;
  }

 private:
  std::ifstream file_;
  std::int64_t length_ = 0;
};

// Whether the file holds all chunks of pixels, and one with a transparent colour stands before them.
void WalkPngChunks(File& file, FileHeader& header) {
  constexpr std::int64_t kBegin = 8;
  bool hasPixels = false;
  header.isWhole = false;
  for (std::int64_t at = kBegin;;) {
    const std::string head = file.Read(at, 8);
    if (head.size() < 8) return;
    const std::string_view name = std::string_view(head).substr(4);
    if (name == "tRNS") header.hasAlpha = true;
    at += Big32(head, 0) + 12;
    const bool isPixels = name == "IDAT";
    if (isPixels && at > file.Length()) return;
    hasPixels = hasPixels || isPixels;
    // Readers need nothing behind them.
    if (hasPixels) header.isWhole = true;
    if (name == "IEND") return;
  }
}

void ReadPng(File& file, std::string_view bytes, FileHeader& header) {
  if (bytes.size() < 26) return;
  header.format = "png";
  header.width = Big32(bytes, 16);
  header.height = Big32(bytes, 20);
  header.bits = static_cast<std::int32_t>(Byte(bytes, 24));
  const std::int64_t colours = Byte(bytes, 25);
  header.isPalette = (colours & 1) != 0;
  header.isGrey = (colours & 2) == 0;
  header.hasAlpha = (colours & 4) != 0;
  header.channels = header.isPalette ? 1 : (header.isGrey ? 1 : 3) + (header.hasAlpha ? 1 : 0);
  WalkPngChunks(file, header);
}

// Whether the end of a picture stands behind its begin; other data may follow.
bool HasJpegEnd(File& file, std::int64_t begin) {
  constexpr std::int64_t kPart = std::int64_t{1} << 16;
  constexpr std::string_view kEnd("\xff\xd9");
  for (std::int64_t at = file.Length(); at > begin;) {
    const std::int64_t from = std::max(begin, at - kPart);
    if (file.Read(from, static_cast<std::size_t>(at - from) + 1).find(kEnd) != std::string::npos) return true;
    at = from;
  }
  return false;
}

// Through the segments before the pixels.
void ReadJpeg(File& file, FileHeader& header) {
  constexpr std::int64_t kScan = 0xda;
  header.format = "jpeg";
  header.isWhole = false;
  for (std::int64_t at = 2;;) {
    const std::string head = file.Read(at, 10);
    if (head.size() < 4 || head[0] != '\xff') return;
    const std::int64_t marker = Byte(head, 1);
    if (marker == 0xff) {
      ++at;
      continue;
    }
    const bool isFrame = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
    if (isFrame && head.size() == 10) {
      header.bits = static_cast<std::int32_t>(Byte(head, 4));
      header.height = Big16(head, 5);
      header.width = Big16(head, 7);
      header.channels = static_cast<std::int32_t>(Byte(head, 9));
      header.isGrey = header.channels == 1;
      header.hasInks = header.channels == 4;
    }
    at += 2 + Big16(head, 2);
    if (marker != kScan) continue;
    header.isWhole = HasJpegEnd(file, at);
    return;
  }
}

void ReadBmp(File& file, std::string_view bytes, FileHeader& header) {
  constexpr std::int64_t kOldHeader = 12;
  if (bytes.size() < 34) return;
  header.format = "bmp";
  const bool isOld = Little32(bytes, 14) == kOldHeader;
  const auto whole = [](std::int64_t value) { return static_cast<std::int64_t>(static_cast<std::int32_t>(value)); };
  header.width = isOld ? Little16(bytes, 18) : whole(Little32(bytes, 18));
  // Below 0: the top row comes first.
  header.height = isOld ? Little16(bytes, 20) : std::abs(whole(Little32(bytes, 22)));
  const std::int64_t pixelBits = isOld ? Little16(bytes, 24) : Little16(bytes, 28);
  const std::int64_t packing = isOld ? 0 : Little32(bytes, 30);
  // 16 bits are three colours, of 5 each or some other way.
  header.bits = pixelBits <= 8 ? static_cast<std::int32_t>(pixelBits) : pixelBits == 16 ? 5 : 8;
  header.isPalette = pixelBits <= 8;
  header.channels = pixelBits <= 8 ? 1 : pixelBits == 32 ? 4 : 3;
  header.hasAlpha = pixelBits == 32;
  if (packing != 0 && packing != 3) return;
  const std::int64_t rowBytes = (header.width * pixelBits + 31) / 32 * 4;
  const std::int64_t begin = Little32(bytes, 10);
  header.isWhole = rowBytes > 0 && (file.Length() - begin) / rowBytes >= header.height;
}

enum Tag : std::uint16_t {
  kWidth = 256,
  kHeight = 257,
  kBits = 258,
  kCompression = 259,
  kMeaning = 262,
  kStrips = 273,
  kSamples = 277,
  kStripBytes = 279,
  kPlanes = 284,
  kColours = 320,
  kTileWidth = 322,
  kTileHeight = 323,
  kTiles = 324,
  kTileBytes = 325,
  kExtraSamples = 338,
  kSampleFormat = 339,
};

// All reds, then all greens and blues, of 16 bits each. Those of 8 bits times 257 come back.
std::vector<std::uint32_t> PaletteOf(const std::vector<std::int64_t>& colours) {
  const std::size_t count = colours.size() / 3;
  std::vector<std::uint32_t> palette;
  for (std::size_t i = 0; i < count; ++i) {
    const auto part = [&](std::size_t which) { return static_cast<std::uint32_t>(colours[which * count + i] / 257); };
    palette.push_back(0xff000000u | part(0) << 16 | part(1) << 8 | part(2));
  }
  return palette;
}

void ReadTiff(File& file, FileHeader& header) {
  const TiffTags::Source source = [&](std::int64_t at, std::size_t count) { return file.Read(at, count); };
  const TiffTags tags(source);
  if (!tags.IsTiff()) return;
  header.format = "tiff";
  header.pictures = std::max(1, TiffTags::CountDirectories(source));
  header.width = tags.Number(kWidth, 0);
  header.height = tags.Number(kHeight, 0);
  header.bits = static_cast<std::int32_t>(tags.Number(kBits, 1));
  header.channels = static_cast<std::int32_t>(tags.Number(kSamples, 1));
  const std::int64_t meaning = tags.Number(kMeaning, 1);
  header.isGrey = meaning <= 1;
  header.isWhiteLeast = meaning == 0;
  header.isPalette = meaning == 3;
  header.hasInks = meaning == 5;
  if (header.isPalette) header.palette = PaletteOf(tags.Numbers(kColours));
  header.isBig = tags.IsBig();
  header.isPlanar = header.channels > 1 && tags.Number(kPlanes, 1) == 2;
  const std::int64_t extra = tags.Number(kExtraSamples, 0);
  constexpr std::int64_t kRgb = 2;
  header.hasAlpha = extra == 1 || extra == 2;
  const bool isOneMore = meaning <= kRgb && header.channels == (header.isGrey ? 2 : 4);
  header.hasUnknownChannel = isOneMore && !header.hasAlpha;
  header.sampleFormat = static_cast<std::int32_t>(tags.Number(kSampleFormat, 1));
  header.meaning = meaning;
  header.associatedAlpha = extra == 1;
  header.tileWidth = static_cast<std::int32_t>(tags.Number(kTileWidth, 0));
  header.tileHeight = static_cast<std::int32_t>(tags.Number(kTileHeight, 0));
  header.compression = NameOfTiffCompression(tags.Number(kCompression, 1));
  const bool hasTiles = tags.Has(kTiles);
  const auto places = tags.Numbers(hasTiles ? kTiles : kStrips);
  const auto lengths = tags.Numbers(hasTiles ? kTileBytes : kStripBytes);
  header.isWhole = !places.empty();
  for (std::size_t i = 0; i < places.size(); ++i) {
    const std::int64_t length = i < lengths.size() ? lengths[i] : 0;
    header.isWhole = header.isWhole && places[i] <= file.Length() && length <= file.Length() - places[i];
  }
}

}  // namespace

std::string NameOfTiffCompression(std::int64_t number) {
  constexpr std::int64_t kOldZip = 32946;
  constexpr std::int64_t kPackbits = 32773;
  if (number == kOldZip) return "zip";
  if (number == kPackbits) return "packbits";
  // From 1 on, in the list's order.
  const bool isListed = number >= 1 && number < static_cast<std::int64_t>(kTiffCompressions.size());
  return isListed ? std::string(kTiffCompressions[static_cast<std::size_t>(number - 1)]) : std::string();
}

FileHeader ReadFileHeader(const std::filesystem::path& path) {
  File file(path);
  const std::string head = file.Read(0, 64);
  const std::string_view bytes(head);
  FileHeader header;
  if (bytes.starts_with("\x89PNG\r\n\x1a\n")) ReadPng(file, bytes, header);
  if (bytes.starts_with("\xff\xd8\xff")) ReadJpeg(file, header);
  if (bytes.starts_with("BM")) ReadBmp(file, bytes, header);
  if (bytes.starts_with("II") || bytes.starts_with("MM")) ReadTiff(file, header);
  return header;
}

}  // namespace vblur::host
