#include "host/formats/JpegSegments.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include "host/formats/ExifBlock.h"
#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

constexpr unsigned char kScan = 0xda;
constexpr unsigned char kComment = 0xfe;
constexpr unsigned char kApplication = 0xe0;  // the first of 16
constexpr std::string_view kExif("Exif\0\0", 6);
constexpr std::string_view kPictures("MPF\0", 4);
constexpr std::string_view kResources("Photoshop 3.0");

struct Segment {
  unsigned char marker = 0;
  std::string data;

  bool Is(int application, std::string_view beginning) const {
    return marker == kApplication + application && data.starts_with(beginning);
  }
};

// Nothing where the file is damaged.
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
  if (length < 2) return std::nullopt;
  segment.data.resize(length - 2);
  if (!file.read(segment.data.data(), static_cast<std::streamsize>(segment.data.size()))) return std::nullopt;
  return segment;
}

// Nothing behind it stands before the pixels.
bool IsLast(const std::optional<Segment>& segment) {
  return !segment || segment->marker == kScan;
}

// Goes on to behind the end of a picture, from anywhere between its segments or in its pixels. False: it has none.
bool SkipPicture(std::istream& file) {
  constexpr int kEnd = 0xd9;
  constexpr auto kMost = std::numeric_limits<std::streamsize>::max();
  while (file.ignore(kMost, 0xff)) {
    int marker = file.get();
    while (marker == 0xff)
      marker = file.get();
    if (marker == kEnd) return true;
    // In the pixels, and at a picture's begin.
    if (marker <= 1 || (marker >= 0xd0 && marker <= 0xd8)) continue;
    const int high = file.get();
    const int length = high << 8 | file.get();
    if (file && length > 2) file.ignore(length - 2);
  }
  return false;
}

// Whether anything but padding follows the picture in whose pixels the file stands, and those behind it.
bool HasDataBehind(std::istream& file, bool hasPictures) {
  if (!SkipPicture(file)) return false;
  while (true) {
    int byte = file.get();
    while (byte == 0)
      byte = file.get();
    if (!file) return false;
    if (!hasPictures || byte != 0xff || file.get() != 0xd8 || !SkipPicture(file)) return true;
  }
}

// Of none of the formats that are known: JFIF, Exif and XMP, colour profiles and further pictures, signed histories,
// image resources, and what says how colours are coded.
bool IsOther(const Segment& segment) {
  constexpr std::pair<int, std::string_view> kKnown[] = {{0, "JF"},
                                                         {1, kExif},
                                                         {1, "http://ns.adobe.com/"},
                                                         {2, kPictures},
                                                         {2, std::string_view("ICC_PROFILE\0", 12)},
                                                         {11, "JP"},
                                                         {13, kResources},
                                                         {14, "Adobe"}};
  const int application = segment.marker - kApplication;
  if (application < 0 || application > 15) return false;
  return std::ranges::none_of(kKnown, [&](const auto& each) { return segment.Is(each.first, each.second); });
}

// What segments hold that the reader passes over.
class Unread {
 public:
  void Add(const Segment& segment) {
    if (segment.Is(1, kExif)) AddExif(segment);
    if (segment.marker == kComment) AddComment(segment);
    hasPictures_ = hasPictures_ || segment.Is(2, kPictures);
    hasHistory_ = hasHistory_ || segment.Is(11, "JP");
    hasXmp_ = hasXmp_ || segment.Is(1, "http://ns.adobe.com/xap/") || segment.Is(1, "http://ns.adobe.com/xmp/");
    if (segment.Is(13, kResources)) AddResources(segment.data);
    hasOther_ = hasOther_ || IsOther(segment);
  }

  // `file` stands in the pixels.
  void AddBehind(std::istream& file) { hasMore_ = HasDataBehind(file, hasPictures_); }

  JpegFacts Facts() {
    JpegFacts facts;
    // The reader gives the description of Exif data, else the first comment.
    const std::string description = FactsOfExif(exif_).description;
    if (!description.empty()) std::erase(comments_, description);
    const bool hasComment = comments_.size() > (description.empty() ? 1 : 0);
    const std::pair<bool, const char*> kinds[] = {{hasComment, "comment"},
                                                  {hasMoreExif_, "further Exif data"},
                                                  {hasXmp_, "XMP data"},
                                                  {hasPictures_, "further pictures (MPF)"},
                                                  {hasHistory_, "signed history (JUMBF)"},
                                                  {hasLateIptc_, "IPTC data behind other resources"},
                                                  {hasResources_, "image resources (8BIM)"},
                                                  {hasOther_, "segments of applications"},
                                                  {hasMore_, "data behind the picture"}};
    for (const auto& [is, kind] : kinds) {
      if (is) facts.unread.emplace_back(kind);
    }
    facts.exif = std::move(exif_);
    return facts;
  }

 private:
  void AddExif(const Segment& segment) {
    const std::string exif = segment.data.substr(kExif.size());
    if (exif_.empty()) exif_ = exif;
    hasMoreExif_ = hasMoreExif_ || exif != exif_;
  }

  // Some that differ: whether there are more than one of them, beside a description, is what counts.
  void AddComment(const Segment& segment) {
    constexpr std::size_t kEnough = 3;
    if (comments_.size() == kEnough) return;
    const std::string comment = segment.data.substr(0, segment.data.find('\0'));
    if (!comment.empty() && std::ranges::find(comments_, comment) == comments_.end()) comments_.push_back(comment);
  }

  // Each has an identifier, a name and its data, padded to an even length. The reader takes IPTC data that come first
  // and have no name.
  void AddResources(std::string_view data) {
    constexpr std::string_view kBegin = "8BIM";
    constexpr std::int64_t kIptc = 0x0404;
    constexpr std::int64_t kSumOfIptc = 0x0425;
    const std::size_t first = kResources.size() + 1;
    for (std::size_t at = first; at + kBegin.size() <= data.size();) {
      const std::size_t name = at + kBegin.size() + 2;
      const bool begins = data.substr(at, kBegin.size()) == kBegin && name < data.size();
      const std::size_t length = begins ? name + (static_cast<std::size_t>(Byte(data, name)) + 2) / 2 * 2 : 0;
      if (!begins || length + 4 > data.size()) {
        hasResources_ = true;
        return;
      }
      const std::int64_t id = Big16(data, name - 2);
      const bool isRead = at == first && length == name + 2;
      hasLateIptc_ = hasLateIptc_ || (id == kIptc && !isRead);
      hasResources_ = hasResources_ || (id != kIptc && id != kSumOfIptc);
      at = length + 4 + static_cast<std::size_t>((Big32(data, length) + 1) / 2 * 2);
    }
  }

  std::vector<std::string> comments_;
  std::string exif_;
  bool hasMoreExif_ = false;
  bool hasXmp_ = false;
  bool hasPictures_ = false;
  bool hasHistory_ = false;
  bool hasLateIptc_ = false;
  bool hasResources_ = false;
  bool hasOther_ = false;
  bool hasMore_ = false;
};

}  // namespace

JpegFacts FactsOfJpeg(std::istream& file) {
  Unread unread;
  auto segment = NextSegment(file);
  for (; !IsLast(segment); segment = NextSegment(file))
    unread.Add(*segment);
  if (segment) unread.AddBehind(file);
  return unread.Facts();
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
  for (auto segment = NextSegment(stream); !IsLast(segment); segment = NextSegment(stream)) {
    const auto end = static_cast<std::size_t>(stream.tellg());
    if (!segment->Is(1, kExif)) result.append(head, read, end - read);
    if (segment->Is(0, "JFIF")) place = result.size();
    read = end;
  }
  result.append(head, read);
  return result.insert(place, added);
}

namespace {

std::string MakeSegment(int marker, const std::string& data) {
  const std::size_t length = data.size() + 2;
  return std::string{'\xff', static_cast<char>(marker), static_cast<char>(length >> 8),
                     static_cast<char>(length & 0xff)} +
         data;
}

// With whole segments behind the one that files begin with.
std::string WithSegments(const std::string& head, const std::string& segments) {
  std::istringstream stream(head);
  stream.seekg(2);
  const auto first = NextSegment(stream);
  if (!head.starts_with("\xff\xd8") || IsLast(first)) return head;
  const std::size_t place = first->Is(0, "JFIF") ? static_cast<std::size_t>(stream.tellg()) : 2;
  return std::string(head).insert(place, segments);
}

// What IPTC data stand behind: their identifier, and an empty name.
constexpr std::string_view kIptcResource("8BIM\x04\x04\0\0", 8);

}  // namespace

std::string WithProfile(const std::string& head, const std::string& profile) {
  constexpr std::size_t kPart = 65000;
  constexpr std::size_t kMost = 255;
  const std::size_t count = (profile.size() + kPart - 1) / kPart;
  if (count > kMost) return head;
  std::string segments;
  for (std::size_t i = 0; i < count; ++i) {
    std::string data("ICC_PROFILE\0", 12);
    data += {static_cast<char>(i + 1), static_cast<char>(count)};
    segments += MakeSegment(kApplication + 2, data + profile.substr(i * kPart, kPart));
  }
  return WithSegments(head, segments);
}

std::string WithTexts(const std::string& head, const std::string& comment, const std::string& iptc) {
  std::string segments;
  if (!comment.empty() && comment.size() <= kMostInSegment) segments += MakeSegment(kComment, comment);
  if (!iptc.empty() && iptc.size() <= kMostInSegment) {
    std::string data = std::string(kResources) + '\0' + std::string(kIptcResource) + Big32Bytes(iptc.size());
    data += iptc + std::string(iptc.size() % 2, '\0');
    segments += MakeSegment(kApplication + 13, data);
  }
  return WithSegments(head, segments);
}

std::string IptcOf(std::string_view data) {
  const std::size_t first = kResources.size() + 1;
  const std::size_t begin = first + kIptcResource.size() + 4;
  const bool has =
      data.starts_with(kResources) && data.size() > begin && data.substr(first, kIptcResource.size()) == kIptcResource;
  return has ? std::string(data.substr(begin, static_cast<std::size_t>(Big32(data, begin - 4)))) : std::string();
}

}  // namespace vblur::host
