#include "host/formats/FileExtras.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <string_view>

#include "host/formats/FileBytes.h"
#include "host/formats/PngProfileText.h"
#include "host/formats/TiffTagKinds.h"
#include "host/formats/TiffTags.h"
#include "host/formats/Unpacked.h"

namespace vblur::host {

namespace {

constexpr double kInch = 0.0254;  // in metres
constexpr std::uint16_t kOrientation = 0x0112;
constexpr std::uint16_t kExifTag = 0x8769;
constexpr std::uint16_t kGps = 0x8825;
constexpr std::uint16_t kIptcTag = 33723;

void AddPngScale(std::string_view data, FileExtras& extras) {
  if (data.size() < 9) return;
  const auto x = static_cast<double>(Big32(data, 0));
  const auto y = static_cast<double>(Big32(data, 4));
  const bool isInMetres = Byte(data, 8) == 1;
  extras.hasPixelAspect = !isInMetres && x != y;
  if (!isInMetres) return;
  extras.pixelsPerInchX = x * kInch;
  extras.pixelsPerInchY = y * kInch;
}

// Behind its name and how it is packed.
std::string ProfileOf(std::string_view data) {
  constexpr std::size_t kMost = std::size_t{64} << 20;
  const std::size_t name = data.find('\0');
  if (name == std::string_view::npos || name + 2 > data.size()) return {};
  return Unpacked(data.substr(name + 2), kMost).value_or("damaged");
}

void ReadPng(std::ifstream& file, FileExtras& extras) {
  constexpr std::int64_t kMost = 1 << 20;
  constexpr std::int64_t kMostProfile = 16 << 20;
  constexpr std::string_view kXmp("XML:com.adobe.xmp\0", 18);
  for (std::int64_t at = 8;;) {
    const std::string head = ReadAt(file, at, 8);
    if (head.size() < 8) return;
    const std::string name = head.substr(4);
    const std::int64_t length = Big32(head, 0);
    if (name == "IDAT" || name == "IEND") return;
    if (name == "iCCP" && length <= kMostProfile)
      extras.profile = ProfileOf(ReadAt(file, at + 8, static_cast<std::size_t>(length)));
    if (name == "pHYs") AddPngScale(ReadAt(file, at + 8, 9), extras);
    const bool isText = (name == "tEXt" || name == "zTXt" || name == "iTXt") && length <= kMost;
    const std::string data = isText ? ReadAt(file, at + 8, static_cast<std::size_t>(length)) : std::string();
    // These two are told, or come with the Exif data.
    if (isText && !data.starts_with(kXmp) && !IsExifText(data)) {
      extras.pngTexts += ReadAt(file, at, static_cast<std::size_t>(length) + 12);
      extras.hasTexts = true;
    }
    at += length + 12;
  }
}

void AddJpegScale(std::string_view data, FileExtras& extras) {
  if (data.size() < 12) return;
  constexpr double kCentimetres = 2.54;
  const std::int64_t unit = Byte(data, 7);
  if (unit != 1 && unit != 2) return;
  const double factor = unit == 1 ? 1.0 : kCentimetres;
  extras.pixelsPerInchX = static_cast<double>(Big16(data, 8)) * factor;
  extras.pixelsPerInchY = static_cast<double>(Big16(data, 10)) * factor;
}

void ReadJpeg(std::ifstream& file, FileExtras& extras) {
  constexpr std::string_view kProfile("ICC_PROFILE\0", 12);
  constexpr std::int64_t kScan = 0xda;
  for (std::int64_t at = 2;;) {
    const std::string head = ReadAt(file, at, 4);
    if (head.size() < 4 || head[0] != '\xff' || Byte(head, 1) == kScan) return;
    if (head[1] == '\xff') {
      ++at;
      continue;
    }
    const std::int64_t length = Big16(head, 2);
    const std::string data = ReadAt(file, at + 4, static_cast<std::size_t>(std::max<std::int64_t>(length - 2, 0)));
    const std::int64_t marker = Byte(head, 1);
    if (marker == 0xe0 && data.starts_with("JFIF")) AddJpegScale(data, extras);
    // Parts come in their order, after their number and that of all.
    if (marker == 0xe2 && data.starts_with(kProfile))
      extras.profile += data.substr(std::min(data.size(), kProfile.size() + 2));
    if (marker == 0xed && data.find("8BIM\x04\x04") != std::string::npos) extras.hasIptc = true;
    if (marker == 0xfe) extras.hasTexts = true;
    at += 2 + length;
  }
}

constexpr std::array<std::uint16_t, 9> kTextTags{269, 270, 271, 272, 285, 305, 306, 315, 33432};

void ReadTiff(std::ifstream& file, FileExtras& extras) {
  const TiffTags tags([&](std::int64_t at, std::size_t count) { return ReadAt(file, at, count); });
  constexpr std::uint16_t kProfile = 34675;
  constexpr std::uint16_t kScaleX = 282;
  constexpr std::uint16_t kScaleY = 283;
  constexpr std::uint16_t kUnit = 296;
  extras.profile = tags.Bytes(kProfile);
  const std::int64_t unit = tags.Number(kUnit, 2);
  const double factor = unit == 2 ? 1.0 : unit == 3 ? 2.54 : 0.0;
  extras.pixelsPerInchX = tags.Fraction(kScaleX) * factor;
  extras.pixelsPerInchY = tags.Fraction(kScaleY) * factor;
  extras.orientation = static_cast<int>(tags.Number(kOrientation, 1));
  extras.hasTexts = std::ranges::any_of(kTextTags, [&](std::uint16_t tag) { return tags.Has(tag); });
  extras.hasIptc = tags.Has(kIptcTag);
  extras.hasExif = tags.Has(kExifTag);
  extras.hasGps = tags.Has(kGps);
  for (const auto& [number, tag] : tags.All()) {
    const bool passes =
        number == kOrientation || number == kIptcTag || std::ranges::find(kTextTags, number) != kTextTags.end();
    const auto whole = passes ? tags.InLittleOrder(number) : std::nullopt;
    if (whole) extras.tiffTags.emplace(number, *whole);
    const bool isTold = !passes && IsTiffTagOfPixels(number);
    extras.hasOther = extras.hasOther || !(whole || isTold || tag.count == 0);
  }
}

void ReadBmp(std::ifstream& file, FileExtras& extras) {
  const std::string head = ReadAt(file, 0, 46);
  if (head.size() < 46 || Little32(head, 14) < 40) return;
  extras.pixelsPerInchX = static_cast<double>(Little32(head, 38)) * kInch;
  extras.pixelsPerInchY = static_cast<double>(Little32(head, 42)) * kInch;
}

}  // namespace

FileExtras ReadFileExtras(const std::filesystem::path& path, const std::string& format, const std::string& exif) {
  std::ifstream file(path, std::ios::binary);
  FileExtras extras;
  if (format == "png") ReadPng(file, extras);
  if (format == "jpeg") ReadJpeg(file, extras);
  if (format == "tiff") ReadTiff(file, extras);
  if (format == "bmp") ReadBmp(file, extras);
  if (exif.empty()) return extras;
  const TiffTags tags([&](std::int64_t at, std::size_t count) {
    return at >= 0 && static_cast<std::size_t>(at) < exif.size() ? exif.substr(static_cast<std::size_t>(at), count)
                                                                 : std::string();
  });
  extras.hasGps = tags.Has(kGps);
  return extras;
}

}  // namespace vblur::host
