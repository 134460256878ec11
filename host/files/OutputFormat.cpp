#include "host/files/OutputFormat.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"

namespace vblur::host {

namespace {

using enum SampleType;
using enum PixelLayout;

std::string Extension(const std::filesystem::path& path) {
  std::string extension = Utf8Of(path.extension());
  if (!extension.empty()) extension.erase(0, 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

// The word of a list that equals this one.
std::string FindWord(std::string_view list, std::string_view word) {
  std::istringstream words{std::string(list)};
  for (std::string each; words >> each;) {
    if (EqualIgnoringCase(each, word)) return each;
  }
  return {};
}

const OutputFormat* FindFormat(std::string_view extension) {
  const auto formats = OutputFormats();
  const auto found = std::ranges::find_if(formats, [&](const OutputFormat& format) {
    return !extension.empty() && !FindWord(format.extensions, extension).empty();
  });
  return found == formats.end() ? nullptr : &*found;
}

std::string AllExtensions() {
  std::string all;
  for (const OutputFormat& format : OutputFormats())
    all.append(all.empty() ? "" : " ").append(format.extensions);
  return all;
}

[[noreturn]] void RefuseStorage(const std::filesystem::path& path, const std::string& what, const std::string& found,
                                const std::string& expected) {
  Refuse("output",
         OutputName(path.filename()) + ": this format has no " + what + " " + found + ", expected " + expected);
}

std::string TypesOf(const OutputFormat& format) {
  std::string names;
  for (std::size_t type = 0; type < kSampleTypeNames.size(); ++type) {
    if (!format.types.Has(static_cast<SampleType>(type))) continue;
    names += (names.empty() ? "" : " ") + std::string(kSampleTypeNames[type]);
  }
  return names;
}

// By SampleType: the others, from the nearest to the farthest.
constexpr std::array<std::array<SampleType, 5>, 6> kOtherTypes{{
    {Unsigned10, Unsigned12, Unsigned16, Half, Float},
    {Unsigned12, Unsigned16, Half, Float, Unsigned8},
    {Unsigned16, Float, Half, Unsigned10, Unsigned8},
    {Float, Unsigned12, Half, Unsigned10, Unsigned8},
    {Float, Unsigned16, Unsigned12, Unsigned10, Unsigned8},
    {Half, Unsigned16, Unsigned12, Unsigned10, Unsigned8},
}};

// By PixelLayout.
constexpr std::array<std::array<PixelLayout, 3>, 4> kOtherLayouts{{
    {Rgb, GreyAlpha, Rgba},
    {Rgba, Grey, Rgb},
    {Rgba, Grey, GreyAlpha},
    {Rgb, GreyAlpha, Grey},
}};

template <typename Enum, std::size_t others>
Enum Nearest(const SetOf<Enum>& held, Enum wanted, const std::array<Enum, others>& order) {
  if (held.Has(wanted)) return wanted;
  return *std::ranges::find_if(order, [&](Enum other) { return held.Has(other); });
}

}  // namespace

std::string_view FirstExtension(const OutputFormat& format) {
  return format.extensions.substr(0, format.extensions.find(' '));
}

const OutputFormat& OutputFormatOf(const std::filesystem::path& path) {
  const std::string extension = Extension(path);
  if (const OutputFormat* const format = FindFormat(extension)) return *format;
  // Devices have none.
  if (const std::string flaw = FlawOfName(path); !flaw.empty()) RefuseToWrite(path, flaw);
  Refuse(Utf8Of(path),
         "cannot write: " +
             (extension.empty() ? "the name has no extension" : "unknown file extension \"" + extension + "\"") +
             ", one of these was expected: " + AllExtensions());
}

const OutputFormat& FormatOfExtension(std::string_view place, std::string_view extension) {
  if (const OutputFormat* const format = FindFormat(extension)) return *format;
  Refuse(place, "expected one of " + AllExtensions() + ", found " + Quoted(extension));
}

const OutputFormat& OutputFormatOf(const std::filesystem::path& path, const OutputStorage& storage) {
  return storage.format ? FormatOfExtension("output/format", *storage.format) : OutputFormatOf(path);
}

std::string ExtensionLike(const std::string& inputFormat) {
  const auto formats = OutputFormats();
  const auto found = std::ranges::find(formats, inputFormat, &OutputFormat::name);
  return found == formats.end() ? "png" : std::string(FirstExtension(*found));
}

std::string FindCompression(const OutputFormat& format, std::string_view name) {
  return FindWord(format.compressions, name);
}

void CheckStorage(const std::filesystem::path& path, const OutputStorage& storage) {
  const OutputFormat& format = OutputFormatOf(path, storage);
  if (storage.type && !format.types.Has(*storage.type)) {
    RefuseStorage(path, "type", std::string(NameOf(*storage.type)), "one of " + TypesOf(format));
  }
  if (storage.compression && FindCompression(format, *storage.compression).empty()) {
    RefuseStorage(path, "compression", Quoted(*storage.compression),
                  format.compressions.empty() ? "none to be given" : "one of " + std::string(format.compressions));
  }
  if (!storage.quality) return;
  const std::string quality = std::to_string(*storage.quality);
  if (!format.hasQuality) RefuseStorage(path, "quality", quality, "none to be given");
  if (*storage.quality < 1 || *storage.quality > 100) {
    Refuse("output", OutputName(path.filename()) + ": expected a quality from 1 to 100, found " + quality);
  }
}

SampleType TypeFor(const StoredType& stored) {
  if (stored.number == NumberKind::Float) return stored.bytes <= 2 ? Half : Float;
  if (stored.bits <= 8) return Unsigned8;
  if (stored.bits <= 10) return Unsigned10;
  return stored.bits <= 12 ? Unsigned12 : Unsigned16;
}

SampleType TypeForDepth(std::int32_t depth) {
  return depth == 8 ? Unsigned8 : depth == 16 ? Unsigned16 : Float;
}

SampleType NearestType(const OutputFormat& format, SampleType wanted) {
  return Nearest(format.types, wanted, kOtherTypes[static_cast<std::size_t>(wanted)]);
}

PixelLayout NearestLayout(const OutputFormat& format, bool isGrey, bool hasAlpha) {
  const auto wanted = isGrey ? (hasAlpha ? GreyAlpha : Grey) : (hasAlpha ? Rgba : Rgb);
  return Nearest(format.layouts, wanted, kOtherLayouts[static_cast<std::size_t>(wanted)]);
}

}  // namespace vblur::host
