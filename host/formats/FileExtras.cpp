#include "host/formats/FileExtras.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>

#include "host/formats/FileBytes.h"
#include "host/formats/JpegSegments.h"
#include "host/formats/PngHead.h"
#include "host/formats/PngProfileText.h"
#include "host/formats/TiffTagKinds.h"
#include "host/formats/TiffTags.h"
#include "host/formats/Unpacked.h"

namespace vblur::host {

namespace {

constexpr double kInch = 0.0254;  // in metres
constexpr const char* kDamaged = "damaged";
constexpr std::uint16_t kDescription = 270;
constexpr std::uint16_t kMaker = 271;
constexpr std::uint16_t kModel = 272;
constexpr std::uint16_t kOrientation = 0x0112;
constexpr std::uint16_t kExifTag = 0x8769;
constexpr std::uint16_t kGps = 0x8825;
constexpr std::uint16_t kIptcTag = 33723;
constexpr std::uint16_t kScaleX = 282;
constexpr std::uint16_t kScaleY = 283;
constexpr std::uint16_t kUnit = 296;

void AddPngScale(std::string_view data, FileExtras& extras) {
  if (data.size() < 9) return;
  const auto x = static_cast<double>(Big32(data, 0));
  const auto y = static_cast<double>(Big32(data, 4));
  const bool isInMetres = Byte(data, 8) == 1;
  extras.pngScale = {x, y, isInMetres};
  extras.hasPixelAspect = !isInMetres && x != y;
  if (!isInMetres) return;
  extras.pixelsPerInchX = x * kInch;
  extras.pixelsPerInchY = y * kInch;
}

// Behind its name and how it is packed.
std::string ProfileOf(std::string_view data) {
  constexpr std::size_t kMost = std::size_t{64} << 20;
  const std::size_t name = data.find('\0');
  if (name == std::string_view::npos || name + 2 > data.size()) return kDamaged;
  return Unpacked(data.substr(name + 2), kMost).value_or(kDamaged);
}

void AddPngText(std::string_view name, std::string_view data, const std::string& chunk, FileExtras& extras) {
  const auto text = PngTextOf(name, data);
  if (!text) return;
  if (text->tag != 0) {
    extras.texts[text->tag] = text->text;
  } else {
    extras.own.insert(text->name);
  }
  extras.pngChunks += chunk;
}

// Of those that are read of a file.
void AddPngChunk(const std::string& name, const std::string& chunk, FileExtras& extras) {
  const bool isIntact = IsIntactPngChunk(chunk);
  const std::string_view data = isIntact ? std::string_view(chunk).substr(8, chunk.size() - 12) : std::string_view();
  if (name == "iCCP") extras.profile = ProfileOf(data);
  if (name == "iCCP") return;
  if (!isIntact) return;
  if (name == "pHYs") AddPngScale(data, extras);
  if (name == "pHYs" && extras.pixelsPerInchX > 0.0) return;
  constexpr std::string_view kXmp("XML:com.adobe.xmp\0", 18);
  // These two are told, or come with the Exif data.
  if (data.starts_with(kXmp) || IsExifText(data)) return;
  // Some writers say of every file that it lies where its frame does.
  const bool isAway = name == "oFFs" && data.substr(0, 8).find_first_not_of('\0') != std::string_view::npos;
  if (isAway) extras.own.insert(name);
  if (name != "pHYs" && name != "oFFs") return AddPngText(name, data, chunk, extras);
  extras.pngChunks += chunk;
}

void ReadPng(std::ifstream& file, FileExtras& extras) {
  constexpr std::int64_t kMost = 16 << 20;
  constexpr std::array<std::string_view, 7> kRead{"iCCP", "pHYs", "oFFs", "tIME", "tEXt", "zTXt", "iTXt"};
  for (std::int64_t at = 8;;) {
    const std::string head = ReadAt(file, at, 8);
    if (head.size() < 8) return;
    const std::string name = head.substr(4);
    const std::int64_t length = Big32(head, 0);
    if (name == "IDAT" || name == "IEND") return;
    const bool isRead = std::ranges::find(kRead, name) != kRead.end();
    // Of longer ones there is no chunk: they are damaged.
    if (isRead)
      AddPngChunk(name, length <= kMost ? ReadAt(file, at, static_cast<std::size_t>(length) + 12) : "", extras);
    at += length + 12;
  }
}

void AddJpegScale(std::string_view data, FileExtras& extras) {
  if (data.size() < 12) return;
  constexpr double kCentimetres = 2.54;
  const std::int64_t unit = Byte(data, 7);
  extras.hasPixelAspect = unit == 0 && Big16(data, 8) != Big16(data, 10);
  if (unit != 1 && unit != 2) return;
  const double factor = unit == 1 ? 1.0 : kCentimetres;
  extras.pixelsPerInchX = static_cast<double>(Big16(data, 8)) * factor;
  extras.pixelsPerInchY = static_cast<double>(Big16(data, 10)) * factor;
}

void AddComment(const std::string& data, FileExtras& extras) {
  const std::string comment = data.substr(0, data.find('\0'));
  if (!comment.empty()) extras.texts.emplace(kDescription, TextAsUtf8(comment));
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
    if (marker == 0xed && extras.iptc.empty()) extras.iptc = IptcOf(data);
    if (marker == 0xfe) AddComment(data, extras);
    at += 2 + length;
  }
}

constexpr std::uint16_t kPage = 285;
constexpr std::array<std::uint16_t, 9> kTextTags{269, 270, 271, 272, kPage, 305, 306, 315, 33432};

void AddTiffScale(const TiffTags& tags, FileExtras& extras) {
  const std::int64_t unit = tags.Number(kUnit, 2);
  const double factor = unit == 2 ? 1.0 : unit == 3 ? 2.54 : 0.0;
  extras.pixelsPerInchX = tags.Fraction(kScaleX) * factor;
  extras.pixelsPerInchY = tags.Fraction(kScaleY) * factor;
}

void ReadTiff(std::ifstream& file, FileExtras& extras) {
  const TiffTags tags([&](std::int64_t at, std::size_t count) { return ReadAt(file, at, count); });
  constexpr std::uint16_t kProfile = 34675;
  extras.profile = tags.Bytes(kProfile);
  AddTiffScale(tags, extras);
  const std::int64_t turn = tags.Number(kOrientation, 1);
  const bool isTurn = IsOrientation(turn);
  extras.orientation = isTurn ? static_cast<int>(turn) : 1;
  if (!isTurn) extras.unread.push_back(NameOfWrongOrientation(turn));
  // The codec writes none without a unit.
  const bool hasRatio = tags.Number(kUnit, 2) == 1;
  extras.hasPixelAspect = hasRatio && tags.Fraction(kScaleX) != tags.Fraction(kScaleY);
  extras.iptc = tags.Bytes(kIptcTag);
  extras.hasCamera = tags.Has(kMaker) || tags.Has(kModel);
  if (tags.Has(kExifTag)) extras.unread.emplace_back("Exif data");
  if (tags.Has(kGps)) extras.unread.emplace_back("GPS data");
  std::vector<std::uint16_t> others;
  for (const auto& [number, tag] : tags.All()) {
    const bool isRatio = hasRatio && (number == kScaleX || number == kScaleY || number == kUnit);
    const bool isText = std::ranges::find(kTextTags, number) != kTextTags.end();
    const bool passes = (number == kOrientation && isTurn) || isText || isRatio;
    const auto whole = passes ? tags.InLittleOrder(number) : std::nullopt;
    if (whole) extras.tiffTags.emplace(number, *whole);
    if (whole && IsPictureText(number)) {
      extras.texts.emplace(number, TextAsUtf8(tags.Text(number)));
      if (tags.HasFurtherText(number)) extras.furtherTexts.push_back(NameOfText(number));
    } else if (whole && isText && number != kMaker && number != kModel) {
      extras.own.insert(number == kPage ? "PageName" : "DocumentName");
    }
    const bool isTold =
        !passes && (IsTiffTagOfPixels(number) || number == kIptcTag || (number == kOrientation && !isTurn));
    if (!whole && !isTold && tag.count > 0) others.push_back(number);
  }
  std::ranges::copy(NamesOfTiffTags(others), std::back_inserter(extras.unread));
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
  const TiffTags tags(TiffTags::SourceIn(exif));
  extras.hasGps = tags.Has(kGps);
  const std::int64_t turn = tags.Number(kOrientation, 1);
  extras.orientation = IsOrientation(turn) ? static_cast<int>(turn) : 1;
  for (const auto& [number, tag] : tags.All()) {
    if (!IsPictureText(number)) continue;
    if (!tags.Text(number).empty()) extras.exifTexts.emplace(number, TextAsUtf8(tags.Text(number)));
    if (tags.HasFurtherText(number)) extras.furtherTexts.push_back(NameOfText(number));
  }
  if (extras.pixelsPerInchX <= 0.0 && !(format == "png" && extras.hasPixelAspect)) AddTiffScale(tags, extras);
  // Readers take the description of Exif data for it; comments beside that are told.
  if (format == "jpeg" && extras.exifTexts.contains(kDescription)) extras.texts.erase(kDescription);
  return extras;
}

}  // namespace vblur::host
