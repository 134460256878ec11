#include "host/light/MeantNames.h"

#include <algorithm>

#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

// Beginnings.
constexpr std::string_view kMeant[] = {
    "Aperture",    "Keywords",        "ICCProfile",    "Orientation", "Resolution",   "XResolution", "YResolution",
    "PixelAspect", "screenWindow",    "DateTime",      "Make",        "Model",        "Exposure",    "FNumber",
    "compression", "planarconfig",    "textureformat", "wrapmodes",   "thumbnail",    "Raw profile", "full",
    "world",       "FramesPerSecond", "fovcot",        "background",  "HostComputer", "Exif",        "GPS",
    "IPTC"};

}  // namespace

bool IsMeantName(std::string_view name) {
  return std::ranges::any_of(
      kMeant, [&](std::string_view each) { return EqualIgnoringCase(name.substr(0, each.size()), each); });
}

}  // namespace vblur::host
