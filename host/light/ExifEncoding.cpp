#include "host/light/ExifEncoding.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "host/base/NameMatch.h"
#include "host/files/AttributeNames.h"
#include "host/formats/ExifTags.h"

namespace vblur::host {

namespace {

// The lowest byte first.
std::string Little(std::uint64_t value, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i)
    bytes += static_cast<char>(value >> 8 * i & 0xff);
  return bytes;
}

struct Entry {
  std::uint16_t number = 0;
  ExifType type = ExifType::None;
  std::size_t count = 1;
  std::string value{};  // its bytes, or the place where they lie
};

std::size_t BytesOfDirectory(std::size_t entries) {
  return 2 + 12 * entries + 4;
}

// A value that does not fit its entry lies before all directories.
class Block {
 public:
  void Add(const ExifTag& tag, Entry entry) { Add(DirectoryOf(tag), std::move(entry)); }

  std::string Build() {
    const bool hasCamera = !camera_.empty();
    const bool hasPlace = !place_.empty();
    if (hasCamera) AddVersions();
    if (hasPlace) Add(place_, {0, ExifType::Byte, 4, std::string("\2\2\0\0", 4)});
    const std::size_t begin = data_.size();
    const std::size_t cameraAt = begin + BytesOfDirectory(picture_.size() + hasCamera + hasPlace);
    const std::size_t placeAt = cameraAt + (hasCamera ? BytesOfDirectory(camera_.size()) : 0);
    if (hasCamera) Add(picture_, {kExifDirectory, ExifType::Long, 1, Little(cameraAt, 4)});
    if (hasPlace) Add(picture_, {kPlaceDirectory, ExifType::Long, 1, Little(placeAt, 4)});
    std::ranges::sort(camera_, {}, &Entry::number);
    std::ranges::sort(place_, {}, &Entry::number);
    data_.replace(4, 4, Little(begin, 4));
    Put(picture_);
    if (hasCamera) Put(camera_);
    if (hasPlace) Put(place_);
    return std::move(data_);
  }

 private:
  using Directory = std::vector<Entry>;

  Directory& DirectoryOf(const ExifTag& tag) {
    constexpr std::uint16_t kFirstOfCamera = 0x829a;
    constexpr std::uint16_t kLastOfCamera = 0xa420;
    if (tag.part == ExifPart::Place) return place_;
    return tag.number >= kFirstOfCamera && tag.number <= kLastOfCamera ? camera_ : picture_;
  }

  void Add(Directory& directory, Entry entry) {
    constexpr std::size_t kInEntry = 4;
    if (entry.value.size() > kInEntry) {
      const std::size_t at = data_.size();
      data_ += entry.value;
      entry.value = Little(at, kInEntry);
    }
    entry.value.resize(kInEntry, '\0');
    const auto held = std::ranges::find(directory, entry.number, &Entry::number);
    if (held != directory.end()) {
      *held = std::move(entry);
    } else {
      directory.push_back(std::move(entry));
    }
  }

  // Which every block with a camera's fields has.
  void AddVersions() {
    Add(camera_, {0x9000, ExifType::Bytes, 4, "0230"});
    Add(camera_, {0xa000, ExifType::Bytes, 4, "0100"});
    Add(camera_, {0x9101, ExifType::Bytes, 4, std::string("\1\2\3\0", 4)});
  }

  void Put(const Directory& directory) {
    data_ += Little(directory.size(), 2);
    for (const Entry& entry : directory)
      data_ += Little(entry.number, 2) + Little(static_cast<std::uint64_t>(entry.type), 2) + Little(entry.count, 4) +
               entry.value;
    data_ += Little(0, 4);
  }

  std::string data_{"II*\0\0\0\0\0", 8};
  Directory picture_;
  Directory camera_;
  Directory place_;
};

// A number by the power of ten that makes it a whole one, or nearly. Nothing for one by a whole number, which the full
// library writes otherwise.
std::optional<std::string> FractionBytes(float value) {
  constexpr float kNear = 0.00001f;
  constexpr float kMost = 1e9f;
  constexpr std::uint32_t kMostDecimals = 1'000'000;
  if (!(value >= 0.0f && value < kMost)) return std::nullopt;
  const double inverse = 1.0 / static_cast<double>(value);
  if (value > 0.0f && value < 1.0f && inverse == std::trunc(inverse)) return std::nullopt;
  std::uint32_t below = 1;
  while (value - std::trunc(value) > kNear && below < kMostDecimals) {
    below *= 10;
    value *= 10.0f;
    if (!(value < kMost)) return std::nullopt;
  }
  return Little(static_cast<std::uint32_t>(value), 4) + Little(below, 4);
}

// The full library makes one by 0 of 1/2, 1/4 and so on, and 0.00999 of 0.01: it gets the next larger number.
float FractionOf(const PictureAttribute& attribute) {
  const float value = std::bit_cast<float>(ValueBits(attribute));
  const auto group = GroupOfAttribute(attribute.name, value);
  const bool isExif = group == MetadataGroup::Exif || group == MetadataGroup::Gps;
  return isExif && value > 0.0f && value < 1.0f ? std::nextafter(value, 1.0f) : value;
}

bool IsWhole(const PictureAttribute& attribute) {
  return attribute.type == "int" || attribute.type == "uint" || attribute.type == "uint16";
}

// What becomes of an attribute that is a field.
struct Coded {
  bool isKnown = true;  // else EncodedExif gives nothing
  bool isEntry = false;
  Entry entry{};
};

Coded CodeWhole(const ExifTag& tag, const PictureAttribute& attribute, int bytes) {
  if (!IsWhole(attribute)) return {.isKnown = attribute.type.find('[') == std::string::npos};
  return {.isEntry = true, .entry = {tag.number, tag.type, 1, Little(ValueBits(attribute), bytes)}};
}

Coded Code(const ExifTag& tag, const PictureAttribute& attribute) {
  switch (tag.type) {
    case ExifType::None:
    case ExifType::Bytes: break;
    case ExifType::Text: {
      if (!attribute.IsText()) break;
      return {.isEntry = true, .entry = {tag.number, tag.type, attribute.value.size() + 1, attribute.value + '\0'}};
    }
    case ExifType::Fraction:
    case ExifType::SignedFraction: {
      if (!attribute.type.starts_with("float")) break;
      if (attribute.type != "float" || tag.count != 1) return {.isKnown = false};
      auto bytes = FractionBytes(FractionOf(attribute));
      if (!bytes) return {.isKnown = false};
      return {.isEntry = true, .entry = {tag.number, tag.type, 1, *std::move(bytes)}};
    }
    case ExifType::Short: return CodeWhole(tag, attribute, 2);
    case ExifType::Long: return CodeWhole(tag, attribute, 4);
    case ExifType::Byte: return CodeWhole(tag, attribute, 1);
  }
  return {};
}

}  // namespace

std::optional<std::string> EncodedExif(const LightAttributes& attributes) {
  Block block;
  if (EqualIgnoringCase(attributes.Text("Make"), "Canon")) return std::nullopt;
  for (const PictureAttribute& attribute : attributes.All()) {
    const ExifTag* const tag = FindExifTag(attribute.name);
    if (tag == nullptr) continue;
    Coded coded = Code(*tag, attribute);
    if (!coded.isKnown) return std::nullopt;
    if (coded.isEntry) block.Add(*tag, std::move(coded.entry));
  }
  return block.Build();
}

bool IsEncodedInExif(const PictureAttribute& attribute) {
  const ExifTag* const tag = FindExifTag(attribute.name);
  if (tag == nullptr || FindExifTag(tag->part, tag->number)->name != tag->name) return false;
  switch (tag->type) {
    case ExifType::None:
    case ExifType::Bytes: break;
    case ExifType::Text: return attribute.IsText();
    case ExifType::Fraction:
    case ExifType::SignedFraction: return attribute.type.starts_with("float");
    case ExifType::Byte:
    case ExifType::Short:
    case ExifType::Long: return attribute.type.starts_with("int") || attribute.type.starts_with("uint");
  }
  return false;
}

}  // namespace vblur::host
