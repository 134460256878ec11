#include "host/light/png/PngTextNames.h"

#include <algorithm>
#include <array>

#include "host/base/NameMatch.h"

namespace vblur::host {

namespace {

constexpr std::array<std::array<std::string_view, 2>, 3> kNames = {
    {{"Author", "Artist"}, {"Description", "ImageDescription"}, {"Title", "DocumentName"}}};

// Beginnings of names that mean more than a text somewhere.
constexpr std::string_view kMeant[] = {
    "Aperture",    "Keywords",        "ICCProfile",    "Orientation", "Resolution",   "XResolution", "YResolution",
    "PixelAspect", "screenWindow",    "DateTime",      "Make",        "Model",        "Exposure",    "FNumber",
    "compression", "planarconfig",    "textureformat", "wrapmodes",   "thumbnail",    "Raw profile", "full",
    "world",       "FramesPerSecond", "fovcot",        "background",  "HostComputer", "Exif",        "GPS",
    "IPTC"};

}  // namespace

bool IsPlainKeyword(std::string_view keyword) {
  constexpr std::size_t kLongest = 79;
  const bool isPlain = std::ranges::all_of(keyword, [](char c) { return c >= ' ' && c <= '~' && c != ':'; });
  const bool isMeant = std::ranges::any_of(
      kMeant, [&](std::string_view each) { return EqualIgnoringCase(keyword.substr(0, each.size()), each); });
  return !keyword.empty() && keyword.size() <= kLongest && isPlain && !isMeant && keyword.front() != ' ' &&
         keyword.back() != ' ' && keyword.find("  ") == std::string_view::npos;
}

std::string NameOfKeyword(const std::string& keyword) {
  const auto found = std::ranges::find_if(kNames, [&](const auto& each) { return each[0] == keyword; });
  return found == kNames.end() ? keyword : std::string((*found)[1]);
}

std::string KeywordOfName(const std::string& name) {
  const auto found = std::ranges::find_if(kNames, [&](const auto& each) { return each[1] == name; });
  return found == kNames.end() ? name : std::string((*found)[0]);
}

}  // namespace vblur::host
