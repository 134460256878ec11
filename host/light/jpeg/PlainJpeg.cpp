#include "host/light/jpeg/PlainJpeg.h"

#include <cstdint>
#include <fstream>
#include <string_view>

#include "host/files/AttributeNames.h"
#include "host/formats/FileBytes.h"
#include "host/formats/PictureFileHeader.h"

namespace vblur::host {

namespace {

enum Marker : std::uint8_t {
  Baseline = 0xc0,
  Progressive = 0xc2,
  HuffmanTables = 0xc4,
  Scan = 0xda,
  QuantizerTables = 0xdb,
  RestartInterval = 0xdd,
  App0 = 0xe0,
  App1 = 0xe1,
  App2 = 0xe2,
  App13 = 0xed,
  Comment = 0xfe,
};

bool IsPlainText(std::string_view text) {
  constexpr std::size_t kMostBytes = 7000;
  return !text.empty() && text.size() <= kMostBytes && IsPrintableText(text);
}

class Segments {
 public:
  explicit Segments(const std::filesystem::path& file) : file_(file, std::ios::binary) {}

  bool ArePlain(PlainJpeg& jpeg) {
    if (ReadAt(file_, 0, 2) != "\xff\xd8") return false;
    for (std::int64_t at = 2;;) {
      const std::string head = ReadAt(file_, at, 4);
      if (head.size() < 4 || head[0] != '\xff') return false;
      const std::int64_t length = Big16(head, 2);
      const auto marker = static_cast<Marker>(static_cast<std::uint8_t>(head[1]));
      if (length < 2) return false;
      if (marker == Scan) return hasFrame_;
      const std::string data = ReadAt(file_, at + 4, static_cast<std::size_t>(length - 2));
      if (static_cast<std::int64_t>(data.size()) != length - 2 || !IsPlain(marker, data, jpeg)) return false;
      at += length + 2;
    }
  }

 private:
  bool IsPlain(Marker marker, const std::string& data, PlainJpeg& jpeg) {
    using namespace std::string_view_literals;
    switch (marker) {
      case HuffmanTables:
      case QuantizerTables:
      case RestartInterval: return true;
      case App0: return data.starts_with("JFIF\0"sv) && data.size() == 14;
      case App2: return data.starts_with("ICC_PROFILE\0"sv);
      case App1: {
        const bool isFirst = jpeg.exif.empty() && data.starts_with("Exif\0\0"sv);
        if (isFirst) jpeg.exif = data.substr(6);
        return isFirst && jpeg.exif.size() >= 8 && jpeg.iptc.empty();
      }
      case Comment: {
        // A zero ends it, which many programs write.
        const std::string text = data.substr(0, data.ends_with('\0') ? data.size() - 1 : data.size());
        const bool isFirst = jpeg.description.empty() && IsPlainText(text);
        jpeg.description = text;
        jpeg.isDescribedFirst = jpeg.exif.empty();
        return isFirst && jpeg.iptc.empty();
      }
      case App13: {
        const bool isFirst = jpeg.iptc.empty();
        jpeg.iptc = data;
        return isFirst && !data.empty();
      }
      case Baseline:
      case Progressive: {
        // Precision, height, width, components; then three bytes for each.
        const std::int64_t components = data.size() > 5 ? Byte(data, 5) : 0;
        const bool isFirst = !hasFrame_;
        hasFrame_ = true;
        return isFirst && Byte(data, 0) == 8 && Big16(data, 1) > 0 && Big16(data, 3) > 0 &&
               (components == 1 || components == 3);
      }
      default: return false;
    }
  }

  std::ifstream file_;
  bool hasFrame_ = false;
};

}  // namespace

std::optional<PlainJpeg> PlainJpegOf(const std::filesystem::path& file) {
  PlainJpeg jpeg;
  if (!Segments(file).ArePlain(jpeg)) return std::nullopt;
  // Further pictures, or what stands behind the end.
  if (!FactsOfChunks(file).unread.empty()) return std::nullopt;
  return jpeg;
}

}  // namespace vblur::host
