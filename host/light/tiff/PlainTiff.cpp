#include "host/light/tiff/PlainTiff.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>
#include <utility>

#include "host/files/AttributeNames.h"
#include "host/formats/FileBytes.h"
#include "host/formats/TiffTagKinds.h"
#include "host/formats/TiffTags.h"

namespace vblur::host {

namespace {

namespace tag {
enum Number : std::uint16_t {
  SubfileType = 254,
  Width = 256,
  Height = 257,
  Bits = 258,
  Compression = 259,
  Photometric = 262,
  FillOrder = 266,
  DocumentName = 269,
  Description = 270,
  Strips = 273,
  Orientation = 274,
  Samples = 277,
  RowsPerStrip = 278,
  StripBytes = 279,
  ResolutionX = 282,
  ResolutionY = 283,
  Planes = 284,
  ResolutionUnit = 296,
  Page = 297,
  Software = 305,
  DateTime = 306,
  Artist = 315,
  HostComputer = 316,
  Predictor = 317,
  WhitePoint = 318,
  Primaries = 319,
  TileWidth = 322,
  TileHeight = 323,
  Tiles = 324,
  TileBytes = 325,
  ExtraSamples = 338,
  SampleFormat = 339,
  Copyright = 33432,
  Profile = 34675,
};
}

// Of the last three nothing is read; the full library names them.
constexpr std::uint16_t kPlainTags[] = {
    tag::SubfileType,  tag::Width,        tag::Height,      tag::Bits,         tag::Compression, tag::Photometric,
    tag::FillOrder,    tag::DocumentName, tag::Description, tag::Strips,       tag::Orientation, tag::Samples,
    tag::RowsPerStrip, tag::StripBytes,   tag::ResolutionX, tag::ResolutionY,  tag::Planes,      tag::ResolutionUnit,
    tag::Software,     tag::DateTime,     tag::Artist,      tag::HostComputer, tag::Predictor,   tag::ExtraSamples,
    tag::SampleFormat, tag::Copyright,    tag::Profile,     tag::TileWidth,    tag::TileHeight,  tag::Tiles,
    tag::TileBytes,    tag::Page,         tag::WhitePoint,  tag::Primaries};

struct NamedCompression {
  std::uint16_t number;
  std::string_view name;
};
constexpr NamedCompression kCompressions[] = {{1, "none"}, {5, "lzw"}, {8, "zip"}, {32773, "packbits"}};

struct NamedText {
  std::uint16_t number;
  std::string_view name;
};
constexpr NamedText kTexts[] = {
    {tag::Description, "ImageDescription"}, {tag::Software, "Software"}, {tag::Artist, "Artist"},
    {tag::Copyright, "Copyright"},          {tag::DateTime, "DateTime"}, {tag::DocumentName, "DocumentName"},
    {tag::HostComputer, "HostComputer"}};

// Reads one directory.
class Directory {
 public:
  explicit Directory(const TiffTags& tags) : tags_(tags) {}

  bool IsPlain(PlainTiff& tiff) {
    const bool isKnown = std::ranges::all_of(tags_.All(), [](const auto& each) {
      return std::ranges::find(kPlainTags, each.first) != std::end(kPlainTags);
    });
    return isKnown && HasPlainSamples(tiff) && HasPlainStorage(tiff) && TakeMetadata(tiff);
  }

 private:
  std::int64_t Number(std::uint16_t number, std::int64_t otherwise) const { return tags_.Number(number, otherwise); }

  // Every number of a tag; one for each channel, or `otherwise` where the tag is not there.
  bool AreAll(std::uint16_t number, int count, std::int64_t value, std::int64_t otherwise) const {
    if (!tags_.Has(number)) return value == otherwise;
    const std::vector<std::int64_t> numbers = tags_.Numbers(number);
    return static_cast<int>(numbers.size()) == count &&
           std::ranges::all_of(numbers, [&](std::int64_t each) { return each == value; });
  }

  bool HasPlainSamples(PlainTiff& tiff) const {
    constexpr std::int64_t kMostSide = 1 << 20;
    const std::int64_t width = Number(tag::Width, 0);
    const std::int64_t height = Number(tag::Height, 0);
    const std::int64_t channels = Number(tag::Samples, 1);
    if (width < 1 || height < 1 || width > kMostSide || height > kMostSide || channels < 1 || channels > 4)
      return false;
    tiff.width = static_cast<std::int32_t>(width);
    tiff.height = static_cast<std::int32_t>(height);
    tiff.channels = static_cast<int>(channels);
    const std::vector<std::int64_t> bits = tags_.Numbers(tag::Bits);
    tiff.bits = bits.empty() ? 0 : static_cast<int>(bits.front());
    if (!AreAll(tag::Bits, tiff.channels, tiff.bits, 1)) return false;
    constexpr std::int64_t kUnsigned = 1;
    constexpr std::int64_t kFloats = 3;
    tiff.isFloat = AreAll(tag::SampleFormat, tiff.channels, kFloats, kUnsigned);
    if (!tiff.isFloat && !AreAll(tag::SampleFormat, tiff.channels, kUnsigned, kUnsigned)) return false;
    const bool isUsual = tiff.bits == 16 || tiff.bits == (tiff.isFloat ? 32 : 8);
    if (!isUsual) return false;
    return HasPlainColours(tiff);
  }

  bool HasPlainColours(PlainTiff& tiff) const {
    constexpr std::int64_t kBlackIsLeast = 1;
    constexpr std::int64_t kRgb = 2;
    const bool hasAlpha = tiff.channels % 2 == 0;
    if (Number(tag::Photometric, -1) != (tiff.channels <= 2 ? kBlackIsLeast : kRgb)) return false;
    const std::vector<std::int64_t> extra = tags_.Numbers(tag::ExtraSamples);
    if (!hasAlpha) return extra.empty();
    constexpr std::int64_t kAssociated = 1;
    constexpr std::int64_t kUnassociated = 2;
    tiff.associatedAlpha = extra == std::vector{kAssociated};
    return tiff.associatedAlpha || extra == std::vector{kUnassociated};
  }

  bool HasPlainStorage(PlainTiff& tiff) const {
    const std::string compression = PlainCompressionOf(Number(tag::Compression, 1));
    if (compression.empty()) return false;
    tiff.attributes.AddText("compression", compression);
    constexpr std::int64_t kOfFloats = 3;
    const std::int64_t predictor = Number(tag::Predictor, 1);
    const bool hasPredictor = compression == "lzw" || compression == "zip";
    const bool isPlain = predictor == 1 || (hasPredictor && predictor == (tiff.isFloat ? kOfFloats : 2));
    return isPlain && Number(tag::Planes, 1) == 1 && Number(tag::FillOrder, 1) == 1 &&
           Number(tag::SubfileType, 0) == 0 && HasPlainPlaces(tiff);
  }

  // Strips or tiles.
  bool HasPlainPlaces(PlainTiff& tiff) const {
    constexpr std::int64_t kMostSide = 1 << 16;
    const bool hasStrips = tags_.Has(tag::Strips) && tags_.Has(tag::StripBytes);
    const bool hasTiles = tags_.Has(tag::Tiles) && tags_.Has(tag::TileBytes);
    if (hasStrips == hasTiles) return false;
    const std::int64_t width = Number(tag::TileWidth, 0);
    const std::int64_t height = Number(tag::TileHeight, 0);
    if (hasStrips) return width == 0 && height == 0;
    tiff.tileWidth = static_cast<std::int32_t>(width);
    tiff.tileHeight = static_cast<std::int32_t>(height);
    return width > 0 && height > 0 && width <= kMostSide && height <= kMostSide;
  }

  // In the order of the full library.
  bool TakeMetadata(PlainTiff& tiff) const {
    bool isPlain = TakeText(tag::Description, tiff) && TakeOrientation(tiff) && TakeResolution(tiff);
    for (const std::uint16_t number :
         {tag::Software, tag::Artist, tag::Copyright, tag::DateTime, tag::DocumentName, tag::HostComputer}) {
      isPlain = isPlain && TakeText(number, tiff);
    }
    if (isPlain && tags_.Has(tag::ResolutionX)) {
      const float x = tiff.attributes.Number("XResolution", 0.0f);
      tiff.attributes.AddFloat("PixelAspectRatio", tiff.attributes.Number("YResolution", 0.0f) / x);
    }
    if (const std::string profile = tags_.Bytes(tag::Profile); !profile.empty())
      tiff.attributes.AddBytes("ICCProfile", profile);
    return isPlain;
  }

  bool TakeText(std::uint16_t number, PlainTiff& tiff) const {
    // All of them fit all formats.
    constexpr std::size_t kMostBytes = 7000;
    constexpr std::uint16_t kText = 2;
    if (!tags_.Has(number)) return true;
    const std::string text = tags_.Text(number);
    const bool isPlain = tags_.All().at(number).type == kText && !text.empty() && text.size() <= kMostBytes &&
                         !tags_.HasFurtherText(number) && IsPrintableText(text);
    if (isPlain)
      tiff.attributes.AddText(std::string(std::ranges::find(kTexts, number, &NamedText::number)->name), text);
    return isPlain;
  }

  bool TakeOrientation(PlainTiff& tiff) const {
    if (!tags_.Has(tag::Orientation)) return true;
    const std::int64_t orientation = Number(tag::Orientation, 0);
    tiff.attributes.AddWhole("Orientation", static_cast<std::int32_t>(orientation));
    return IsOrientation(orientation);
  }

  bool TakeResolution(PlainTiff& tiff) const {
    const bool hasX = tags_.Has(tag::ResolutionX);
    if (hasX != tags_.Has(tag::ResolutionY) || hasX != tags_.Has(tag::ResolutionUnit)) return false;
    if (!hasX) return true;
    const std::int64_t unit = Number(tag::ResolutionUnit, 0);
    if (unit < 1 || unit > 3) return false;
    const auto x = static_cast<float>(tags_.Fraction(tag::ResolutionX));
    const auto y = static_cast<float>(tags_.Fraction(tag::ResolutionY));
    if (!(x > 0.0f) || !(y > 0.0f)) return false;
    tiff.attributes.AddFloat("XResolution", x);
    tiff.attributes.AddFloat("YResolution", y);
    tiff.attributes.AddText("ResolutionUnit", std::string(kResolutionUnits[static_cast<std::size_t>(unit) - 1]));
    return true;
  }

  const TiffTags& tags_;
};

}  // namespace

std::uint16_t TagOfTiffText(const std::string& name) {
  const auto* found = std::ranges::find(kTexts, name, &NamedText::name);
  return found != std::end(kTexts) ? found->number : std::uint16_t{0};
}

std::string PlainCompressionOf(std::int64_t number) {
  const auto* found = std::ranges::find(kCompressions, number, &NamedCompression::number);
  return found != std::end(kCompressions) ? std::string(found->name) : "";
}

std::uint16_t TiffCompressionOf(const std::string& name) {
  const auto* found = std::ranges::find(kCompressions, name, &NamedCompression::name);
  return found != std::end(kCompressions) ? found->number : std::uint16_t{0};
}

std::optional<PlainTiff> PlainTiffOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string head = ReadAt(stream, 0, 4);
  if (head != std::string_view("II*\0", 4) && head != std::string_view("MM\0*", 4)) return std::nullopt;
  const auto source = [&](std::int64_t at, std::size_t count) { return ReadAt(stream, at, count); };
  if (TiffTags::CountDirectories(source) != 1) return std::nullopt;
  const TiffTags tags(source);
  PlainTiff tiff;
  if (!Directory(tags).IsPlain(tiff)) return std::nullopt;
  tiff.unread = OtherTiffTags(file, kReadTiffTags);
  return tiff;
}

}  // namespace vblur::host
