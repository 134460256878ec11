// The formats of output files, and what each of them holds.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "host/files/PictureInfo.h"
#include "host/jobs/OutputStorage.h"

namespace vblur::host {

// What a pixel consists of.
enum class PixelLayout : std::uint8_t { Grey, GreyAlpha, Rgb, Rgba };

constexpr bool IsGrey(PixelLayout layout) {
  return layout == PixelLayout::Grey || layout == PixelLayout::GreyAlpha;
}
constexpr bool HasAlpha(PixelLayout layout) {
  return layout == PixelLayout::GreyAlpha || layout == PixelLayout::Rgba;
}

// A set of enumerators, one bit for each.
template <typename Enum>
struct SetOf {
  unsigned bits = 0;

  template <typename... Members>
  static constexpr SetOf These(Members... members) {
    return {((1u << static_cast<unsigned>(members)) | ... | 0u)};
  }
  constexpr void Add(Enum member) { bits |= 1u << static_cast<unsigned>(member); }
  constexpr bool Has(Enum member) const { return (bits >> static_cast<unsigned>(member) & 1u) != 0; }
};

// The kinds of metadata.
enum class MetadataGroup : std::uint8_t {
  Exif,
  Gps,
  Iptc,
  Profile,
  Orientation,
  Resolution,
  PixelAspect,
  Text,
  TimeCode,
  DpxHeader,
  Other
};

// By MetadataGroup: their names in messages.
inline constexpr std::array<std::string_view, 11> kMetadataNames{
    "Exif data",    "GPS data", "IPTC data", "colour profile", "orientation",     "resolution",
    "pixel aspect", "text",     "time code", "DPX header",     "other attributes"};

struct OutputFormat {
  std::string_view name;        // the picture library's name
  std::string_view extensions;  // in lower case, separated by spaces
  SetOf<SampleType> types;
  SetOf<PixelLayout> layouts;
  bool hasWindows;                // a data window besides the display window
  bool hasAnyChannels;            // of any number, name and type
  std::string_view compressions;  // what files of this format can be packed with, separated by spaces
  bool hasQuality;
  bool hasNegative;         // floats below 0
  std::int32_t mostPixels;  // along each side
  SetOf<MetadataGroup> metadata;
};

// All of the system, in a fixed order.
std::span<const OutputFormat> OutputFormats();

// The usual one of its extensions.
std::string_view FirstExtension(const OutputFormat& format);

// The format for a file name's extension. Throws Failure (wrong usage) with the list of known extensions.
const OutputFormat& OutputFormatOf(const std::filesystem::path& path);

// The format with this extension, without its dot, in any case. Throws Failure (wrong usage) that begins with `place`.
const OutputFormat& FormatOfExtension(std::string_view place, std::string_view extension);
// The format that is asked for, else that of the name.
const OutputFormat& OutputFormatOf(const std::filesystem::path& path, const OutputStorage& storage);
// The first extension of the format in which a picture is written like an input of this format; PNG where none is.
std::string ExtensionLike(const std::string& inputFormat);

// The format's spelling of a compression, which may be in any case; empty where it has none of that name.
std::string FindCompression(const OutputFormat& format, std::string_view name);

// Refuses what the format of a file does not have. Throws Failure (wrong usage) that names the option or field.
void CheckStorage(const std::filesystem::path& path, const OutputStorage& storage);

// The narrowest type that holds a stored sample.
SampleType TypeFor(const StoredType& stored);
// The type of a picture without a source file.
SampleType TypeForDepth(std::int32_t depth);
// The type itself, or the nearest that the format has: one that holds all of it before one that does not.
SampleType NearestType(const OutputFormat& format, SampleType wanted);
// The same for layouts: colour and alpha are given up last, and added only where there is no other way.
PixelLayout NearestLayout(const OutputFormat& format, bool isGrey, bool hasAlpha);

}  // namespace vblur::host
