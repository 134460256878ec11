#include "host/formats/FileAttributes.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <string_view>

#include "host/formats/ExifTags.h"
#include "host/formats/FileBytes.h"
#include "host/formats/FileExtras.h"
#include "host/formats/PictureTexts.h"
#include "host/formats/PngHead.h"
#include "host/formats/PngProfileText.h"
#include "host/formats/TiffTagKinds.h"

namespace vblur::host {

namespace {

std::string NumberText(double number) {
  std::array<char, 40> text{};
  // Whole numbers, too.
  const bool isWhole = number == static_cast<double>(static_cast<std::int64_t>(number));
  std::snprintf(text.data(), text.size(), isWhole ? "%.0f" : "%g", number);
  return text.data();
}

class Attributes {
 public:
  // In place of one of this name.
  void Set(const std::string& name, const std::string& value) {
    const auto found = std::ranges::find(all_, name, &FileAttributes::value_type::first);
    if (found == all_.end()) {
      all_.emplace_back(name, value);
    } else {
      found->second = value;
    }
  }
  void Add(const std::string& name, const std::string& value) {
    const bool isNew = std::ranges::find(all_, name, &FileAttributes::value_type::first) == all_.end();
    if (isNew && !value.empty()) all_.emplace_back(name, value);
  }
  void SetScale(double x, double y) {
    Set("XResolution", NumberText(x));
    Set("YResolution", NumberText(y));
  }
  void SetAspect(double aspect) {
    if (aspect != 1.0) Set("PixelAspectRatio", NumberText(aspect));
  }

  FileAttributes Take() { return std::move(all_); }

 private:
  FileAttributes all_;
};

// Those of a list, as in "48, 30, 12.5".
std::string ValueOf(const TiffTags& tags, std::uint16_t tag) {
  constexpr std::size_t kMost = 64;
  constexpr std::uint16_t kText = 2;
  constexpr std::uint16_t kBytes = 7;
  const TiffTag& held = tags.All().at(tag);
  if (held.type == kText) return TextAsUtf8(tags.Text(tag));
  if (held.type == kBytes) return TextAsUtf8(held.bytes.substr(0, held.bytes.find('\0')));
  std::string list;
  for (const double value : tags.Values(tag)) {
    if (list.size() > kMost) break;
    list += (list.empty() ? "" : ", ") + NumberText(value);
  }
  return list;
}

void AddTag(const TiffTags& tags, std::uint16_t tag, std::string_view name, Attributes& attributes) {
  if (!tags.Has(tag)) return;
  constexpr std::uint16_t kOrientation = 274;
  constexpr std::uint16_t kUnit = 296;
  // The usual one; one that is none is told otherwise.
  if (tag == kOrientation && (tags.Number(tag, 1) == 1 || !IsOrientation(tags.Number(tag, 1)))) return;
  constexpr std::array<const char*, 4> kUnits{"", "none", "in", "cm"};
  const auto unit = static_cast<std::size_t>(tags.Number(tag, 0));
  attributes.Add(std::string(name), tag == kUnit ? kUnits[unit < kUnits.size() ? unit : 0] : ValueOf(tags, tag));
}

void AddAll(const TiffTags& tags, ExifPart part, Attributes& attributes) {
  for (const auto& [number, tag] : tags.All()) {
    const std::string_view name = NameOfExifTag(part, number);
    if (!name.empty()) AddTag(tags, number, name, attributes);
  }
}

void AddFurther(const TiffTags::Source& source, Attributes& attributes) {
  constexpr std::uint16_t kCameraTag = 0x8769;
  constexpr std::uint16_t kPlaceTag = 0x8825;
  AddAll(TiffTags::BehindTag(source, kCameraTag), ExifPart::Camera, attributes);
  AddAll(TiffTags::BehindTag(source, kPlaceTag), ExifPart::Place, attributes);
}

void AddExif(const std::string& exif, Attributes& attributes) {
  if (exif.empty()) return;
  const TiffTags::Source source = TiffTags::SourceIn(exif);
  AddAll(TiffTags(source), ExifPart::Picture, attributes);
  AddFurther(source, attributes);
}

void AddPng(const FileExtras& extras, Attributes& attributes) {
  constexpr std::size_t kHead = 8;
  std::string_view chunks = extras.pngChunks;
  std::vector<PngText> texts;
  for (; chunks.size() > kHead; chunks.remove_prefix(static_cast<std::size_t>(Big32(chunks, 0)) + 12)) {
    const auto name = chunks.substr(4, 4);
    const auto text = PngTextOf(name, chunks.substr(kHead, static_cast<std::size_t>(Big32(chunks, 0))));
    // The time comes first.
    if (text) texts.insert(name == "tIME" ? texts.begin() : texts.end(), *text);
  }
  for (const PngText& text : texts)
    attributes.Set(text.name, text.text);
}

void AddScale(const PngScale& scale, Attributes& attributes) {
  constexpr double kInch = 0.0254;  // in metres
  if (scale.x <= 0.0 || scale.y <= 0.0) return;
  attributes.Set("ResolutionUnit", scale.isInMetres ? "inch" : "none");
  attributes.SetScale(scale.x * (scale.isInMetres ? kInch : 1.0), scale.y * (scale.isInMetres ? kInch : 1.0));
  attributes.SetAspect(scale.y / scale.x);
}

void AddJpeg(std::ifstream& file, const FileExtras& extras, Attributes& attributes) {
  constexpr std::uint16_t kDescription = 270;
  const auto comment = extras.texts.find(kDescription);
  if (comment != extras.texts.end()) attributes.Add("ImageDescription", comment->second);
  // Of the segment that files begin with.
  const std::string head = ReadAt(file, 2, 16);
  if (head.size() < 16 || head.substr(4, 4) != "JFIF") return;
  const std::int64_t unit = Byte(head, 11);
  const auto x = static_cast<double>(Big16(head, 12));
  const auto y = static_cast<double>(Big16(head, 14));
  const bool isRatio = unit == 0 && x != y;
  if ((unit != 1 && unit != 2 && !isRatio) || x <= 0.0 || y <= 0.0) return;
  attributes.SetScale(x, y);
  attributes.SetAspect(y / x);
  attributes.Set("ResolutionUnit", isRatio ? "none" : unit == 1 ? "in" : "cm");
}

void AddTiff(const TiffTags::Source& source, Attributes& attributes) {
  constexpr std::array<std::pair<std::uint16_t, std::string_view>, 13> kTags{{{270, "ImageDescription"},
                                                                              {274, "Orientation"},
                                                                              {282, "XResolution"},
                                                                              {283, "YResolution"},
                                                                              {296, "ResolutionUnit"},
                                                                              {271, "Make"},
                                                                              {272, "Model"},
                                                                              {305, "Software"},
                                                                              {315, "Artist"},
                                                                              {33432, "Copyright"},
                                                                              {306, "DateTime"},
                                                                              {269, "DocumentName"},
                                                                              {316, "HostComputer"}}};
  constexpr std::uint16_t kScaleX = 282;
  constexpr std::uint16_t kScaleY = 283;
  const TiffTags tags(source);
  for (const auto& [tag, name] : kTags)
    AddTag(tags, tag, name, attributes);
  if (tags.Fraction(kScaleX) > 0.0 && tags.Fraction(kScaleY) > 0.0)
    attributes.SetAspect(tags.Fraction(kScaleY) / tags.Fraction(kScaleX));
  AddFurther(source, attributes);
}

void AddBmp(std::ifstream& file, Attributes& attributes) {
  const std::string head = ReadAt(file, 0, 46);
  if (head.size() < 46 || Little32(head, 14) < 40 || Little32(head, 38) == 0) return;
  attributes.SetScale(static_cast<double>(Little32(head, 38)), static_cast<double>(Little32(head, 42)));
  attributes.Set("ResolutionUnit", "m");
}

}  // namespace

FileAttributes ReadFileAttributes(const std::filesystem::path& path, const std::string& format,
                                  const std::string& exif) {
  std::ifstream file(path, std::ios::binary);
  const FileExtras extras = ReadFileExtras(path, format, exif);
  Attributes attributes;
  if (!extras.profile.empty()) attributes.Set("ICCProfile", std::to_string(extras.profile.size()) + " bytes");
  if (format == "png") {
    AddPng(extras, attributes);
    AddScale(extras.pngScale, attributes);
  }
  if (format == "tiff")
    AddTiff([&](std::int64_t at, std::size_t count) { return ReadAt(file, at, count); }, attributes);
  AddExif(exif, attributes);
  if (format == "jpeg") AddJpeg(file, extras, attributes);
  if (format == "bmp") AddBmp(file, attributes);
  return attributes.Take();
}

}  // namespace vblur::host
