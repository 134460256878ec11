#include "host/light/IptcTexts.h"

#include <algorithm>
#include <array>

#include "host/files/AttributeNames.h"
#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

struct IptcText {
  int number;
  std::string_view name;
  std::string_view nameInExif;
};

constexpr std::array<IptcText, 4> kTexts = {{{65, "IPTC:OriginatingProgram", "Software"},
                                             {80, "IPTC:Creator", "Artist"},
                                             {116, "IPTC:CopyrightNotice", "Copyright"},
                                             {120, "IPTC:Caption", "ImageDescription"}}};
// Of which there may be several.
constexpr int kCreator = 80;

constexpr std::string_view kResources("Photoshop 3.0\0008BIM\4\4\0\0\0\0", 24);
constexpr std::string_view kDataSet("\x1c\2");

bool IsPlain(std::string_view text) {
  return !text.empty() && IsPrintableText(text);
}

std::string Big16Bytes(std::size_t value) {
  return {static_cast<char>(value >> 8 & 0xff), static_cast<char>(value & 0xff)};
}

}  // namespace

bool IsIptcText(std::string_view name) {
  return std::ranges::find(kTexts, name, &IptcText::name) != kTexts.end();
}

std::string IptcSegmentOf(const LightAttributes& attributes) {
  std::string sets;
  for (const IptcText& each : kTexts) {
    for (const std::string_view name : {each.name, each.nameInExif}) {
      const std::string text = attributes.Text(name);
      if (text.empty()) continue;
      sets.append(kDataSet).append(1, static_cast<char>(each.number)).append(Big16Bytes(text.size())).append(text);
    }
  }
  return sets.empty() ? "" : std::string(kResources) + Big16Bytes(sets.size()) + sets;
}

bool TakeIptcSegment(std::string_view segment, LightAttributes& attributes) {
  constexpr std::size_t kHead = 5;
  if (!segment.starts_with(kResources) || segment.size() < kResources.size() + 2) return false;
  const auto length = static_cast<std::size_t>(Big16(segment, kResources.size()));
  std::string_view sets = segment.substr(kResources.size() + 2);
  if (sets.size() != length) return false;
  for (; !sets.empty(); sets.remove_prefix(kHead + static_cast<std::size_t>(Big16(sets, 3)))) {
    if (sets.size() < kHead || !sets.starts_with(kDataSet)) return false;
    const auto size = static_cast<std::size_t>(Big16(sets, 3));
    const auto known = std::ranges::find(kTexts, static_cast<int>(Byte(sets, 2)), &IptcText::number);
    if (known == kTexts.end() || sets.size() < kHead + size) return false;
    const std::string text(sets.substr(kHead, size));
    const bool isSeveral =
        known->number == kCreator && (attributes.Find(known->name) != nullptr || text.find(';') != std::string::npos ||
                                      text.starts_with(' ') || text.ends_with(' '));
    if (!IsPlain(text) || isSeveral) return false;
    attributes.Set(std::string(known->name), "string", text);
    if (attributes.Find(known->nameInExif) == nullptr) attributes.AddText(std::string(known->nameInExif), text);
  }
  return true;
}

}  // namespace vblur::host
