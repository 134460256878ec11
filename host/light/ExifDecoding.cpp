#include "host/light/ExifDecoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "host/base/NameMatch.h"
#include "host/files/AttributeNames.h"
#include "host/formats/ExifBlock.h"
#include "host/formats/ExifTags.h"
#include "host/formats/TiffTagKinds.h"
#include "host/formats/TiffTags.h"

namespace vblur::host {

namespace {

// Of the types of values, from 0 on; 0: none.
constexpr std::array<std::size_t, 13> kBytesOfType = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};

// A field as it is stored.
struct Stored {
  std::uint16_t number = 0;
  std::uint16_t type = 0;
  std::size_t count = 0;
  std::string bytes{};  // the lowest byte of each number first
};

// Reads a block into attributes; all that it does not know ends it.
class Decoder {
 public:
  explicit Decoder(const std::string& block) : block_(block), isBig_(block.starts_with("MM")) {}

  bool Decode() {
    const ExifFacts facts = FactsOfExif(block_);
    if (!facts.isExif) return block_.empty() || !facts.isDamaged;
    const bool isKnown = !facts.isDamaged && facts.mayPass && !facts.wrongOrientation;
    return isKnown && ReadDirectory(Number(4, 4), ExifPart::Picture) && !IsOfKnownCamera();
  }

  DecodedExif Take() {
    for (const ExifField& field : FieldsOfExif(block_)) {
      const auto number = static_cast<std::uint16_t>(field.tag);
      const ExifPart part = field.isGps ? ExifPart::Place : ExifPart::Camera;
      const bool isTold = !field.isGps && number == kMakerNote;
      const bool isGiven = std::ranges::find(given_, field) != given_.end();
      if (!isTold && !isGiven && !IsExifOfStorage(part, number))
        decoded_.unread.push_back({NameOf(part, number), field.isGps});
    }
    return std::move(decoded_);
  }

 private:
  bool Has(std::size_t at, std::size_t count) const { return at <= block_.size() && block_.size() - at >= count; }

  std::size_t Number(std::size_t at, std::size_t count) const {
    std::size_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
      value = value << 8 | static_cast<unsigned char>(block_[at + (isBig_ ? i : count - 1 - i)]);
    return value;
  }

  bool ReadDirectory(std::size_t at, ExifPart part) {
    constexpr std::size_t kEntry = 12;
    // Of the picture, its camera, its place and compatibility: more lead to one another.
    constexpr int kMostDirectories = 4;
    if (++directories_ > kMostDirectories || !Has(at, 2)) return false;
    const std::size_t count = Number(at, 2);
    if (!Has(at + 2, count * kEntry + 4)) return false;
    for (std::size_t i = 0; i < count; ++i) {
      if (!ReadEntry(at + 2 + i * kEntry, part)) return false;
    }
    return true;
  }

  bool ReadEntry(std::size_t at, ExifPart part) {
    Stored stored{static_cast<std::uint16_t>(Number(at, 2)), static_cast<std::uint16_t>(Number(at + 2, 2)),
                  Number(at + 4, 4)};
    const std::size_t value = Number(at + 8, 4);
    if (part != ExifPart::Place && stored.number == kExifDirectory) return ReadDirectory(value, ExifPart::Camera);
    if (part != ExifPart::Place && stored.number == kPlaceDirectory) return ReadDirectory(value, ExifPart::Place);
    if (part != ExifPart::Place && stored.number == kInteroperability) return ReadDirectory(value, ExifPart::Camera);
    if (stored.type >= kBytesOfType.size() || kBytesOfType[stored.type] == 0 || stored.count == 0) return false;
    const std::size_t size = kBytesOfType[stored.type];
    if (stored.count > block_.size()) return false;
    const std::size_t length = stored.count * size;
    const std::size_t place = length <= 4 ? at + 8 : value;
    if (!Has(place, length)) return false;
    stored.bytes = block_.substr(place, length);
    if (isBig_) Turn(stored.bytes, stored.type);
    return Give(stored, part);
  }

  // Fractions are two numbers.
  static void Turn(std::string& bytes, std::uint16_t type) {
    const std::size_t size = kBytesOfType[type];
    const auto step = static_cast<std::ptrdiff_t>(IsFraction(static_cast<ExifType>(type)) ? size / 2 : size);
    for (auto begin = bytes.begin(); begin != bytes.end(); begin += step)
      std::reverse(begin, begin + step);
  }

  bool Give(const Stored& stored, ExifPart part) {
    const ExifTag* const tag = FindExifTag(part, stored.number);
    // Fields of TIFF files: the full library has names for them.
    constexpr std::uint16_t kOfTiff[] = {269, 285, 297, 316, 700, 33302, 33303, 33304};
    const bool isPlace = part == ExifPart::Place;
    if (tag == nullptr && !isPlace && std::ranges::find(kOfTiff, stored.number) != std::end(kOfTiff)) return false;
    if (tag == nullptr || tag->type == ExifType::None) return true;
    const std::string name(tag->name);
    if (stored.number == kMakerNote && !isPlace) return true;
    if (name.ends_with("Version") || name.ends_with("VersionID")) return GiveVersion(*tag, stored);
    const auto type = static_cast<ExifType>(stored.type);
    if (IsGiven(type, stored.count) && !IsUsual(*tag, type)) return false;
    switch (type) {
      case ExifType::Text: return GiveText(*tag, stored);
      case ExifType::Short: return GiveNumbers(*tag, stored, "uint16", stored.bytes);
      case ExifType::Long: return GiveNumbers(*tag, stored, "uint", stored.bytes);
      case ExifType::Fraction:
      case ExifType::SignedFraction: return GiveFractions(*tag, stored);
      case ExifType::Byte:
        return stored.count != 1 || GiveNumbers(*tag, stored, "int", stored.bytes + std::string(3, '\0'));
      default: return true;
    }
  }

  static bool IsFraction(ExifType type) { return type == ExifType::Fraction || type == ExifType::SignedFraction; }
  static bool IsWhole(ExifType type) { return type == ExifType::Short || type == ExifType::Long; }

  static bool IsGiven(ExifType type, std::size_t count) {
    return type == ExifType::Text || IsWhole(type) || IsFraction(type) || (type == ExifType::Byte && count == 1);
  }

  // Whether the tag's values are stored so.
  static bool IsUsual(const ExifTag& tag, ExifType type) {
    return tag.type == type || (IsWhole(tag.type) && IsWhole(type)) || (IsFraction(tag.type) && IsFraction(type));
  }

  // Of two the full library takes the later one.
  bool Set(const ExifTag& tag, std::string type, std::string value) {
    const bool isList = type.ends_with(']');
    if (decoded_.attributes.Find(tag.name) != nullptr || (isList && tag.part == ExifPart::Picture)) return false;
    decoded_.attributes.Add(std::string(tag.name), std::move(type), std::move(value));
    given_.push_back({tag.part == ExifPart::Place, tag.number});
    return true;
  }

  bool GiveVersion(const ExifTag& tag, const Stored& stored) {
    constexpr std::size_t kLetters = 4;
    if (stored.bytes.size() != kLetters) return false;
    if (tag.part == ExifPart::Place) return Set(tag, "uint8[4]", stored.bytes);
    return IsPrintableText(stored.bytes) && Set(tag, "string", stored.bytes);
  }

  bool GiveText(const ExifTag& tag, const Stored& stored) {
    const std::string text = stored.bytes.substr(0, stored.bytes.find('\0'));
    return IsPrintableText(text) && Set(tag, "string", text);
  }

  static std::string ListType(const std::string& type, std::size_t count) {
    return count == 1 ? type : type + '[' + std::to_string(count) + ']';
  }

  bool GiveNumbers(const ExifTag& tag, const Stored& stored, const std::string& type, const std::string& bytes) {
    return Set(tag, ListType(type, stored.count), bytes);
  }

  bool GiveFractions(const ExifTag& tag, const Stored& stored) {
    const bool isSigned = stored.type == static_cast<int>(ExifType::SignedFraction);
    std::string floats;
    for (std::size_t i = 0; i < stored.count; ++i) {
      const double above = Part(stored.bytes, 2 * i, isSigned);
      const double below = Part(stored.bytes, 2 * i + 1, isSigned);
      if (below == 0.0) return false;
      floats += BytesOf(static_cast<float>(above / below));
    }
    return Set(tag, ListType("float", stored.count), floats);
  }

  static double Part(const std::string& bytes, std::size_t index, bool isSigned) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i > 0; --i)
      value = value << 8 | static_cast<unsigned char>(bytes[4 * index + i - 1]);
    return isSigned ? static_cast<double>(static_cast<std::int32_t>(value)) : static_cast<double>(value);
  }

  static std::string NameOf(ExifPart part, std::uint16_t number) {
    const bool isGps = part == ExifPart::Place;
    if (const ExifTag* const tag = FindExifTag(part, number); tag != nullptr) {
      const std::string name(tag->name);
      return (isGps ? "GPS" : "") + name.substr(name.find(':') + 1);
    }
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "0x%04x", static_cast<unsigned>(number));
    return (isGps ? "GPS " : "") + std::string(text.data());
  }

  // Its notes are read.
  bool IsOfKnownCamera() const { return EqualIgnoringCase(decoded_.attributes.Text("Make"), "Canon"); }

  const std::string& block_;
  bool isBig_;
  int directories_ = 0;
  DecodedExif decoded_;
  std::vector<ExifField> given_;
};

}  // namespace

std::optional<DecodedExif> DecodeExif(const std::string& block) {
  Decoder decoder(block);
  if (!decoder.Decode()) return std::nullopt;
  return decoder.Take();
}

bool NameResolutionUnit(const LightAttributes& ofExif, LightAttributes& all) {
  const PictureAttribute* const unit = all.Find("ResolutionUnit");
  if (unit == nullptr || (unit->IsText() && unit->value != "none")) return true;
  const float number = ofExif.Number("ResolutionUnit", 0.0f);
  const bool isOfExif = ofExif.Number("XResolution", 0.0f) == all.Number("XResolution", 0.0f);
  if (!isOfExif || number < 1.0f || number > 3.0f) return unit->IsText();
  all.Set("ResolutionUnit", "string", kResolutionUnits[static_cast<std::size_t>(number) - 1]);
  return true;
}

void DescribeExif(const std::string& block, std::vector<ExifFieldName> unread, PictureInfo& info) {
  const ExifFacts facts = FactsOfExif(block);
  if (facts.mayPass) info.exif = block;
  info.hasMakerNote = facts.hasMakerNote;
  info.unreadExif = std::move(unread);
  info.furtherTexts = NamesOfFurtherTexts(TiffTags::SourceIn(block));
}

}  // namespace vblur::host
