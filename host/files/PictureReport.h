// What a picture file holds, and what an output would lose.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/files/OutputFormat.h"
#include "host/files/PictureInfo.h"

namespace vblur::host {

// What outputs of a format lack of what they hold otherwise.
struct PartsLacking {
  std::vector<std::string> exifFields{};    // their names
  std::vector<std::string> longTexts{};     // names of those that are too long
  std::vector<std::string> furtherTexts{};  // names of those of several strings, of which the first is there
  std::vector<std::string> keptOthers{};    // of PictureReport::others: those that are there all the same
  // By compressions that the system's codec does not have: the one that it writes in their place.
  std::map<std::string, std::string, std::less<>> compressions{};
  SetOf<SampleType> greys{};  // the codec writes greys of these types as red, green and blue
  bool quality = false;       // the codec writes one quality only
};

struct PictureReport {
  PictureInfo info;
  std::string compression;       // by the format's name; empty: none, or not reported
  bool associatedAlpha = false;  // the file declares its colours as premultiplied
  SetOf<MetadataGroup> metadata;
  // The same without what another file of its format keeps as it is, such as text, whatever its name.
  SetOf<MetadataGroup> beyondText;
  std::map<std::string, PartsLacking, std::less<>> lacking;  // by OutputFormat::name; none: nothing
  // The names of its attributes of the group Other; empty: there are none, or they are not known.
  std::vector<std::string> others;
  // The layouts of pixels that its colour profile is for; none where the profile is damaged.
  SetOf<PixelLayout> profileFits;
  std::vector<std::pair<std::string, std::string>> attributes;  // names and values, in the order of the file

  // The groups of the fields of Exif data that are not given.
  void AddGroupsOfUnreadExif();
};

// Throws as ReadPictureInfo does.
PictureReport ReportPicture(const std::filesystem::path& path, const ReadChoice& choice = {});

enum class LossKind { Pictures, Levels, Tiles, Channels, Alpha, Colours, Samples, Metadata, Windows, Packing };

struct Loss {
  LossKind kind = LossKind::Pictures;
  std::string what;  // such as "2 further pictures", "channel Z", "Exif data"

  friend bool operator==(const Loss&, const Loss&) = default;
};

// What an output of this format, rendered at this depth from the file, lacks of what the file holds, whatever its
// pixels are. Samples are lost that do not survive the conversion to the depth and to the output's type.
std::vector<Loss> LossesOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                           std::int32_t depth);
// The same for an output whose pixels have this layout.
std::vector<Loss> LossesOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                           std::int32_t depth, PixelLayout pixels);
// What a file of these pixels, which is made from other files, lacks of what this one holds. Of its packing as much as
// the system's codec would not write either were it made from this one.
std::vector<Loss> LossesBesideOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage,
                                 SampleType written, PixelLayout pixels, std::int32_t depth);

std::string ListOf(const std::vector<Loss>& losses);

// The type, pixel layout and compression that such an output has, whatever its pixels are.
SampleType OutputTypeOf(const PictureInfo& source, const OutputFormat& format, const OutputStorage& storage);
PixelLayout OutputLayoutOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage);
std::string OutputCompressionOf(const PictureReport& report, const OutputFormat& format, const OutputStorage& storage);

std::string NameOf(PixelLayout layout);
// "64 x 64 pixels".
std::string TilesOf(const PictureInfo& info);

}  // namespace vblur::host
