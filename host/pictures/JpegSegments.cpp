#include "host/pictures/JpegSegments.h"

#include <algorithm>
#include <array>
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
  if (file.get() != 0xff) return std::nullopt;
  // Any number of these may stand before a marker.
  while (file.peek() == 0xff)
    file.get();
  std::string head(4, '\xff');
  if (!file.read(head.data() + 1, 3)) return std::nullopt;
  const auto byte = [&](std::size_t at) { return std::size_t{static_cast<unsigned char>(head[at])}; };
  const std::size_t length = byte(2) << 8 | byte(3);
  Segment segment{static_cast<unsigned char>(head[1]), {}};
  if (segment.marker == kScan || length < 2) return std::nullopt;
  segment.data.resize(length - 2);
  if (!file.read(segment.data.data(), static_cast<std::streamsize>(segment.data.size()))) return std::nullopt;
  return segment;
}

// Some that differ: whether there are more than one of them, beside a description, is what counts.
void AddComment(const Segment& segment, std::vector<std::string>& comments) {
  constexpr std::size_t kEnough = 3;
  if (comments.size() == kEnough) return;
  const std::string comment = segment.data.substr(0, segment.data.find('\0'));
  if (!comment.empty() && std::ranges::find(comments, comment) == comments.end()) comments.push_back(comment);
}

// Of none of the formats that are known: JFIF, Exif and XMP, colour profiles and further pictures, signed histories,
// IPTC data, and what says how colours are coded.
bool IsOther(const Segment& segment) {
  constexpr std::array<int, 6> kKnown{0, 1, 2, 11, 13, 14};
  const int application = segment.marker - kApplication;
  return application >= 0 && application < 16 && std::ranges::find(kKnown, application) == kKnown.end();
}

}  // namespace

JpegFacts FactsOfJpeg(std::istream& file) {
  JpegFacts facts;
  std::vector<std::string> comments;
  bool hasPictures = false;
  bool hasHistory = false;
  bool hasXmp = false;
  bool hasOther = false;
  while (const auto segment = NextSegment(file)) {
    if (segment->Is(1, kExif) && facts.exif.empty()) facts.exif = segment->data.substr(kExif.size());
    if (segment->marker == kComment) AddComment(*segment, comments);
    hasPictures = hasPictures || segment->Is(2, std::string_view("MPF\0", 4));
    hasHistory = hasHistory || segment->Is(11, "JP");
    hasXmp = hasXmp || segment->Is(1, "http://ns.adobe.com/xap/") || segment->Is(1, "http://ns.adobe.com/xmp/");
    hasOther = hasOther || IsOther(*segment);
  }
  // The reader gives the description of Exif data, else the first comment.
  const std::string description = FactsOfExif(facts.exif).description;
  if (!description.empty()) std::erase(comments, description);
  if (comments.size() > (description.empty() ? 1 : 0)) facts.unread.emplace_back("comment");
  if (hasXmp) facts.unread.emplace_back("XMP data");
  if (hasPictures) facts.unread.emplace_back("further pictures (MPF)");
  if (hasHistory) facts.unread.emplace_back("signed history (JUMBF)");
  if (hasOther) facts.unread.emplace_back("segments of applications");
  return facts;
}

std::string WithExif(std::string head, const std::string& exif) {
  const std::size_t length = 2 + kExif.size() + exif.size();
  if (!head.starts_with("\xff\xd8") || length > 0xffff) return head;
  std::string added{'\xff', static_cast<char>(kApplication + 1), static_cast<char>(length >> 8),
                    static_cast<char>(length & 0xff)};
  added.append(kExif).append(exif);
  std::istringstream stream(head);
  stream.seekg(2);
  // Behind the segment that files begin with; the library's own data goes.
  std::string result = head.substr(0, 2);
  std::size_t read = 2;
  std::size_t place = 2;
  while (const auto segment = NextSegment(stream)) {
    const auto end = static_cast<std::size_t>(stream.tellg());
    if (!segment->Is(1, kExif)) result.append(head, read, end - read);
    if (segment->Is(0, "JFIF")) place = result.size();
    read = end;
  }
  result.append(head, read);
  return result.insert(place, added);
}

}  // namespace vblur::host
