#include "host/light/png/PngTextNames.h"

#include <algorithm>
#include <array>

#include "host/files/AttributeNames.h"
#include "host/light/MeantNames.h"

namespace vblur::host {

namespace {

constexpr std::array<std::array<std::string_view, 2>, 3> kNames = {
    {{"Author", "Artist"}, {"Description", "ImageDescription"}, {"Title", "DocumentName"}}};

}  // namespace

bool IsPlainKeyword(std::string_view keyword) {
  constexpr std::size_t kLongest = 79;
  const bool isPlain = IsPrintableText(keyword) && keyword.find(':') == std::string_view::npos;
  return !keyword.empty() && keyword.size() <= kLongest && isPlain && !IsMeantName(keyword) && keyword.front() != ' ' &&
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
