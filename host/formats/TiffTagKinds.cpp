#include "host/formats/TiffTagKinds.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "host/formats/ExifTags.h"
#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

constexpr auto kOfPixels =
    std::to_array<std::uint16_t>({254, 255, 256, 257, 258, 259, 262, 263, 264, 265, 266, 273, 277,   278,   279,
                                  280, 281, 282, 283, 284, 292, 293, 296, 297, 317, 320, 322, 323,   324,   325,
                                  338, 339, 340, 341, 347, 512, 513, 514, 529, 530, 531, 532, 34675, 34665, 34853});

// Those of the picture, too, that Exif data do not have.
std::string NameOfTextTag(ExifPart part, std::uint16_t tag) {
  constexpr std::uint16_t kDocument = 269;
  constexpr std::uint16_t kComputer = 316;
  if (part == ExifPart::Picture && tag == kDocument) return "DocumentName";
  if (part == ExifPart::Picture && tag == kComputer) return "HostComputer";
  const std::string_view name = NameOfExifTag(part, tag);
  return std::string(name.substr(name.find(':') + 1));
}

}  // namespace

bool IsTiffTagOfPixels(std::uint16_t tag) {
  return std::ranges::find(kOfPixels, tag) != kOfPixels.end();
}

bool IsOrientation(std::int64_t number) {
  return number >= 1 && number <= 8;
}

std::string NameOfWrongOrientation(std::int64_t number) {
  return "orientation " + std::to_string(number) + " (none of 1 to 8)";
}

std::vector<std::string> NamesOfTiffTags(std::span<const std::uint16_t> tags) {
  constexpr std::uint16_t kXmp = 700;
  constexpr std::size_t kMostNamed = 10;
  std::vector<std::string> names;
  std::string numbers;
  std::size_t count = 0;
  for (const std::uint16_t tag : tags) {
    if (tag == kXmp) {
      names.emplace_back("XMP data");
    } else if (++count <= kMostNamed) {
      numbers += (numbers.empty() ? "" : ", ") + std::to_string(tag);
    }
  }
  if (count > 0)
    names.push_back((count == 1 ? "TIFF tag " : "TIFF tags ") + numbers + (count > kMostNamed ? " and others" : ""));
  return names;
}

std::vector<std::string> NamesOfFurtherTexts(const TiffTags::Source& source) {
  constexpr std::uint16_t kExifTag = 0x8769;
  std::vector<std::string> names;
  const auto add = [&](const TiffTags& tags, ExifPart part) {
    for (const auto& [number, tag] : tags.All()) {
      const std::string name = NameOfTextTag(part, number);
      if (!name.empty() && tags.HasFurtherText(number)) names.push_back(name);
    }
  };
  add(TiffTags(source), ExifPart::Picture);
  add(TiffTags::BehindTag(source, kExifTag), ExifPart::Camera);
  return names;
}

std::vector<std::string> OtherTiffTags(const std::filesystem::path& path, std::span<const std::uint16_t> read) {
  std::ifstream file(path, std::ios::binary);
  const TiffTags tags([&](std::int64_t at, std::size_t count) { return ReadAt(file, at, count); }, 0);
  std::vector<std::uint16_t> others;
  for (const auto& [number, tag] : tags.All()) {
    if (tag.count > 0 && !IsTiffTagOfPixels(number) && std::ranges::find(read, number) == read.end())
      others.push_back(number);
  }
  return NamesOfTiffTags(others);
}

}  // namespace vblur::host
