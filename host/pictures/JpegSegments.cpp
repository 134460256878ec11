#include "host/pictures/JpegSegments.h"

#include <cstdint>
#include <optional>
#include <sstream>
#include <string_view>

#include "host/pictures/ExifBlock.h"

namespace vblur::host {

namespace {

constexpr unsigned char kScan = 0xda;
constexpr unsigned char kComment = 0xfe;
constexpr unsigned char kApplication = 0xe0;  // the first of 16
constexpr std::string_view kExif("Exif\0\0", 6);

struct Segment {
  unsigned char marker = 0;
  std::string data;

  bool Is(int application, std::string_view beginning) const {
    return marker == kApplication + application && data.starts_with(beginning);
  }
};

// Nothing at the pixels, and where the file is damaged.
std::optional<Segment> NextSegment(std::istream& file) {
  std::string head(4, '\0');
  if (!file.read(head.data(), 4) || head[0] != '\xff') return std::nullopt;
  const auto byte = [&](std::size_t at) { return std::size_t{static_cast<unsigned char>(head[at])}; };
  const std::size_t length = byte(2) << 8 | byte(3);
  Segment segment{static_cast<unsigned char>(head[1]), {}};
  if (segment.marker == kScan || length < 2) return std::nullopt;
  segment.data.resize(length - 2);
  if (!file.read(segment.data.data(), static_cast<std::streamsize>(segment.data.size()))) return std::nullopt;
  return segment;
}

}  // namespace

JpegFacts FactsOfJpeg(std::istream& file) {
  JpegFacts facts;
  std::string comment;
  bool hasPictures = false;
  bool hasHistory = false;
  while (const auto segment = NextSegment(file)) {
    if (segment->Is(1, kExif) && facts.exif.empty()) facts.exif = segment->data.substr(kExif.size());
    if (segment->marker == kComment) comment = segment->data.substr(0, segment->data.find('\0'));
    hasPictures = hasPictures || segment->Is(2, std::string_view("MPF\0", 4));
    hasHistory = hasHistory || segment->Is(11, "JP");
  }
  const std::string description = FactsOfExif(facts.exif).description;
  if (!description.empty() && !comment.empty() && description != comment) facts.unread.emplace_back("comment");
  if (hasPictures) facts.unread.emplace_back("further pictures (MPF)");
  if (hasHistory) facts.unread.emplace_back("signed history (JUMBF)");
  return facts;
}

std::string WithExif(std::string file, const std::string& exif) {
  const std::size_t length = 2 + kExif.size() + exif.size();
  if (!file.starts_with("\xff\xd8") || length > 0xffff) return file;
  std::string added{'\xff', static_cast<char>(kApplication + 1), static_cast<char>(length >> 8),
                    static_cast<char>(length & 0xff)};
  added.append(kExif).append(exif);
  std::istringstream stream(file);
  stream.seekg(2);
  // Behind the segment that files begin with; the library's own data goes.
  std::size_t at = 2;
  std::size_t place = at;
  while (const auto segment = NextSegment(stream)) {
    const std::size_t bytes = segment->data.size() + 4;
    if (segment->Is(1, kExif)) {
      file.erase(at, bytes);
      continue;
    }
    at += bytes;
    if (segment->Is(0, "JFIF")) place = at;
  }
  return file.insert(place, added);
}

}  // namespace vblur::host
