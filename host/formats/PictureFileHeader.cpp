#include "host/formats/PictureFileHeader.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>

#include "host/formats/FileBytes.h"
#include "host/formats/JpegSegments.h"
#include "host/formats/PictureTexts.h"
#include "host/formats/PngHead.h"
#include "host/formats/PngProfileText.h"

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

// Reads parts of a file.
class FileParts {
 public:
  explicit FileParts(const std::filesystem::path& path) : file_(path, std::ios::binary) {}

  // Fewer bytes at the end of the file.
  std::string Read(std::int64_t at, std::size_t count) const {
    std::string bytes(count, '\0');
    file_.clear();
    file_.seekg(at);
    file_.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, file_.gcount())));
    return bytes;
  }

 private:
  mutable std::ifstream file_;
};

// Chunks of a PNG file about colours, and the lengths of their data.
constexpr std::pair<std::string_view, std::int64_t> kColourChunks[] = {{"sRGB", 1}, {"gAMA", 4},  {"cHRM", 32},
                                                                       {"cICP", 4}, {"mDCV", 24}, {"cLLI", 8}};

class PngFile {
 public:
  explicit PngFile(const std::filesystem::path& path) : file_(path) {}

  ChunkFacts Facts() {
    // A file of more chunks is hardly a picture.
    constexpr int kMostChunks = 1'000'000;
    std::int64_t at = static_cast<std::int64_t>(kPngSignature.size());
    for (int count = 0; count < kMostChunks; ++count) {
      const std::string head = file_.Read(at, 12);
      if (head.size() < 12) break;
      const std::int64_t next = at + Big32(head, 0) + 12;
      if (head.substr(4, 4) == "IEND") {
        if (HasDataFrom(next)) Tell("data behind the picture");
        break;
      }
      Add(head, at);
      at = next;
    }
    if (facts_.exif.empty()) facts_.exif = textExif_;
    if (!textExif_.empty() && textExif_ != facts_.exif) Tell("further Exif data");
    if (!others_.empty()) Tell(OtherChunks());
    // One more where the picture of the pixels is no frame itself.
    const std::int64_t frames = declared_ == 0 ? 1 : declared_ + (isFrame_ ? 0 : 1);
    facts_.frames = static_cast<std::int32_t>(std::min<std::int64_t>(frames, kMostFrames));
    return std::move(facts_);
  }

 private:
  // Whether anything but padding stands there.
  bool HasDataFrom(std::int64_t at) const {
    constexpr std::size_t kBytes = 1 << 16;
    for (std::string bytes = file_.Read(at, kBytes); !bytes.empty(); bytes = file_.Read(at, kBytes)) {
      if (bytes.find_first_not_of('\0') != std::string::npos) return true;
      at += static_cast<std::int64_t>(bytes.size());
    }
    return false;
  }

  void Add(const std::string& head, std::int64_t at) {
    const std::string name = head.substr(4, 4);
    const std::int64_t length = Big32(head, 0);
    isBehind_ = isBehind_ || name == "IDAT";
    if (isBehind_ ? AddBehind(name, length, at) : AddBefore(head, at)) return;
    if (name == "caBX") return Tell("signed history (JUMBF)");
    AddOther(name);
  }

  // False: nothing is taken of it.
  bool AddBefore(std::string_view head, std::int64_t at) {
    const std::string_view name = head.substr(4, 4);
    const std::int64_t length = Big32(head, 0);
    // The reader takes these; the last says where pixels lie in the file.
    facts_.hasProfile = facts_.hasProfile || name == "iCCP";
    TellDamaged(name, length, at);
    if (name == "oFFs") AddPlace(length, at);
    constexpr std::string_view kRead[] = {"IHDR", "PLTE", "tRNS", "iCCP", "pHYs", "oFFs", "tIME", "fdAT", "iDOT"};
    if (std::ranges::find(kRead, name) != std::end(kRead)) return true;
    if (name == "acTL") declared_ = Big32(head, 8);
    isFrame_ = isFrame_ || name == "fcTL";
    if (name == "acTL" || name == "fcTL") return true;
    for (const auto& [colour, bytes] : kColourChunks) {
      if (name == colour) return length == bytes && AddColour(name, Chunk(length, at));
    }
    if (name == "eXIf") AddExif(length, at);
    if (IsText(name) && IsExifText(file_.Read(at + 8, kExifKeyword))) AddExifText(name, length, at);
    constexpr std::string_view kXmp("XML:com.adobe.xmp\0", 18);
    if (name == "iTXt" && file_.Read(at + 8, kXmp.size()) == kXmp) Tell("XMP data");
    return name == "eXIf" || IsText(name);
  }

  // Readers pass over these.
  void TellDamaged(std::string_view name, std::int64_t length, std::int64_t at) {
    constexpr std::string_view kChecked[] = {"tRNS", "pHYs", "oFFs", "tIME", "tEXt", "zTXt", "iTXt"};
    constexpr std::int64_t kMost = 16 << 20;
    if (std::ranges::find(kChecked, name) == std::end(kChecked)) return;
    if (IsText(name) && IsExifText(file_.Read(at + 8, kExifKeyword))) return;
    const std::string chunk = length > kMost ? std::string() : Chunk(length, at);
    const bool isSound = IsIntactPngChunk(chunk) &&
                         (!IsText(name) || PngTextOf(name, std::string_view(chunk).substr(8, chunk.size() - 12)));
    if (!isSound) Tell("damaged PNG chunk " + std::string(name));
  }

  // The unit stands behind the two numbers.
  void AddPlace(std::int64_t length, std::int64_t at) {
    const std::string chunk = length == 9 ? Chunk(length, at) : std::string();
    const bool isAway = chunk.size() == 21 && chunk.substr(8, 8).find_first_not_of('\0') != std::string::npos;
    const bool isPlaced = isAway && chunk[16] == 1 && IsIntactPngChunk(chunk);
    facts_.isPlacedInMicrometres = facts_.isPlacedInMicrometres || isPlaced;
  }

  // Readers stop at the pixels.
  bool AddBehind(std::string_view name, std::int64_t length, std::int64_t at) {
    if (IsText(name)) AddLateText(length, at);
    if (name == "eXIf") Tell("Exif data behind the pixels");
    return IsText(name) || name == "eXIf" || name == "IDAT" || name == "fcTL" || name == "fdAT";
  }

  static bool IsText(std::string_view name) { return name == "tEXt" || name == "zTXt" || name == "iTXt"; }

  std::string Chunk(std::int64_t length, std::int64_t at) const {
    return file_.Read(at, static_cast<std::size_t>(length) + 12);
  }

  void AddLateText(std::int64_t length, std::int64_t at) {
    constexpr std::int64_t kMost = 1 << 20;
    const bool fits = length <= kMost && static_cast<std::int64_t>(facts_.lateTexts.size()) <= kMost;
    const std::string chunk = fits ? Chunk(length, at) : std::string();
    if (static_cast<std::int64_t>(chunk.size()) != length + 12 || !IsIntactPngChunk(chunk))
      return Tell("texts behind the pixels");
    facts_.lateTexts += chunk;
  }

  bool AddColour(std::string_view name, const std::string& chunk) {
    const bool isNew = facts_.colourChunks.find(name) == std::string::npos;
    if (!isNew || chunk.size() <= 12 || !IsIntactPngChunk(chunk)) return false;
    facts_.colourChunks += chunk;
    return true;
  }

  void AddExif(std::int64_t length, std::int64_t at) {
    constexpr std::int64_t kLongest = 16 << 20;
    if (length > kLongest) return Tell("Exif data");
    const std::string chunk = Chunk(length, at);
    // Some programs write it as JPEG files have it.
    constexpr std::string_view kJpeg("Exif\0\0", 6);
    if (static_cast<std::int64_t>(chunk.size()) != length + 12 || !IsIntactPngChunk(chunk))
      return Tell("damaged Exif data");
    const std::string exif = chunk.substr(8, static_cast<std::size_t>(length));
    if (exif.starts_with(kJpeg)) return Tell("Exif data");
    if (facts_.exif.empty()) facts_.exif = exif;
    if (exif != facts_.exif) Tell("further Exif data");
  }

  void AddExifText(std::string_view name, std::int64_t length, std::int64_t at) {
    const bool fits = length <= static_cast<std::int64_t>(kLongestExifText);
    const std::string chunk = fits ? Chunk(length, at) : std::string();
    const bool isWhole = static_cast<std::int64_t>(chunk.size()) == length + 12 && IsIntactPngChunk(chunk);
    auto exif =
        isWhole ? ExifOfText(name, std::string_view(chunk).substr(8, static_cast<std::size_t>(length))) : std::nullopt;
    if (!exif || (!textExif_.empty() && *exif != textExif_))
      return Tell(exif ? "further Exif data" : "damaged Exif data");
    textExif_ = std::move(*exif);
  }

  void AddOther(const std::string& name) {
    // Damaged names are none.
    const bool isName =
        std::ranges::all_of(name, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
    if (!isName || std::ranges::find(others_, name) != others_.end()) return;
    if (others_.size() < kMostOthers)
      others_.push_back(name);
    else
      hasMoreOthers_ = true;
  }

  std::string OtherChunks() const {
    std::string names;
    for (const std::string& name : others_)
      names += (names.empty() ? "" : ", ") + name;
    return (others_.size() == 1 ? "PNG chunk " : "PNG chunks ") + names + (hasMoreOthers_ ? " and others" : "");
  }

  void Tell(const std::string& kind) {
    if (std::ranges::find(facts_.unread, kind) == facts_.unread.end()) facts_.unread.push_back(kind);
  }

  static constexpr std::size_t kMostOthers = 10;

  FileParts file_;
  ChunkFacts facts_;
  std::string textExif_;  // of a text
  std::int64_t declared_ = 0;
  bool isFrame_ = false;
  bool isBehind_ = false;
  // Names of chunks that nothing is taken of, each once.
  std::vector<std::string> others_;
  bool hasMoreOthers_ = false;
};

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
  if (head.substr(0, 8) == kPngSignature) return PngFile(path).Facts();
  ChunkFacts facts;
  if (head.substr(0, 3) != "\xff\xd8\xff") return facts;
  file.seekg(2);
  JpegFacts jpeg = FactsOfJpeg(file);
  facts.unread = std::move(jpeg.unread);
  facts.exif = std::move(jpeg.exif);
  return facts;
}

}  // namespace vblur::host
