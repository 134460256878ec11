#include "host/light/MeantNames.h"

#include <algorithm>

#include "host/base/NameMatch.h"
#include "host/formats/ExifTags.h"

namespace vblur::host {

namespace {

// Beginnings.
constexpr std::string_view kMeant[] = {"Aperture",
                                       "Keywords",
                                       "ICCProfile",
                                       "Orientation",
                                       "Resolution",
                                       "XResolution",
                                       "YResolution",
                                       "PixelAspect",
                                       "screenWindow",
                                       "DateTime",
                                       "Make",
                                       "Model",
                                       "Exposure",
                                       "FNumber",
                                       "compression",
                                       "planarconfig",
                                       "textureformat",
                                       "wrapmodes",
                                       "thumbnail",
                                       "Raw profile",
                                       "full",
                                       "world",
                                       "FramesPerSecond",
                                       "fovcot",
                                       "background",
                                       "HostComputer",
                                       "Exif",
                                       "GPS",
                                       "IPTC",
                                       "name"};

}  // namespace

bool IsMeantName(std::string_view name) {
  return std::ranges::any_of(
      kMeant, [&](std::string_view each) { return EqualIgnoringCase(name.substr(0, each.size()), each); });
}

bool IsNotedName(std::string_view name) {
  if (EqualIgnoringCase(name, "FramesPerSecond") || name.starts_with("smpte:")) return true;
  return name.find(':') == std::string_view::npos && FindExifTag(name) == nullptr && !IsMeantName(name);
}

}  // namespace vblur::host
