#include "host/formats/PictureTexts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>

#include "host/base/Utf8.h"
#include "host/formats/FileBytes.h"
#include "host/formats/PngHead.h"
#include "host/formats/Unpacked.h"

namespace vblur::host {

namespace {

struct TextKind {
  std::uint16_t tag;
  std::string_view name;
  std::string_view keyword;  // in PNG files
};

constexpr std::uint16_t kDate = 306;
constexpr std::array<TextKind, 5> kKinds{{{270, "ImageDescription", "Description"},
                                          {305, "Software", "Software"},
                                          {kDate, "DateTime", "DateTime"},
                                          {315, "Artist", "Author"},
                                          {33432, "Copyright", "Copyright"}}};

std::string Utf8OfLatin1(std::string_view text) {
  std::u16string wide;
  for (const char c : text)
    wide.push_back(static_cast<char16_t>(static_cast<unsigned char>(c)));
  return Utf8Of(std::u16string_view(wide));
}

std::string DateOf(std::string_view data) {
  std::array<char, 32> text{};
  const auto at = [&](std::size_t place) { return static_cast<int>(Byte(data, place)); };
  std::snprintf(text.data(), text.size(), "%04d:%02d:%02d %02d:%02d:%02d", static_cast<int>(Big16(data, 0)), at(2),
                at(3), at(4), at(5), at(6));
  return text.data();
}

// The data of a chunk (tIME); nothing for other texts than such dates.
std::optional<std::string> TimeOf(const std::string& date) {
  std::array<int, 6> parts{};
  int end = 0;
  const int read = std::sscanf(date.c_str(), "%4d:%2d:%2d %2d:%2d:%2d%n", &parts[0], &parts[1], &parts[2], &parts[3],
                               &parts[4], &parts[5], &end);
  const bool isDate = read == 6 && static_cast<std::size_t>(end) == date.size() &&
                      std::ranges::all_of(parts, [](int part) { return part >= 0; });
  if (!isDate) return std::nullopt;
  std::string data{static_cast<char>(parts[0] >> 8), static_cast<char>(parts[0] & 0xff)};
  for (std::size_t i = 1; i < parts.size(); ++i)
    data.push_back(static_cast<char>(parts[i]));
  return data;
}

// Behind the keyword of a chunk (iTXt).
std::optional<std::string> InternationalText(std::string_view data) {
  constexpr std::size_t kMost = std::size_t{4} << 20;
  if (data.size() < 3) return std::nullopt;
  const bool isPacked = data[1] != '\0';
  data.remove_prefix(3);
  // The language, and the keyword in it.
  for (int i = 0; i < 2; ++i) {
    const std::size_t end = data.find('\0');
    if (end == std::string_view::npos) return std::nullopt;
    data.remove_prefix(end + 1);
  }
  return isPacked ? Unpacked(data, kMost) : std::optional(std::string(data));
}

std::optional<std::string> TextOf(std::string_view name, std::string_view behind) {
  constexpr std::size_t kMost = std::size_t{4} << 20;
  if (name == "iTXt") return InternationalText(behind);
  if (name == "tEXt") return Utf8OfLatin1(behind.substr(1));
  if (name != "zTXt" || behind.size() < 2) return std::nullopt;
  const auto unpacked = Unpacked(behind.substr(2), kMost);
  return unpacked ? std::optional(Utf8OfLatin1(*unpacked)) : std::nullopt;
}

}  // namespace

bool IsPictureText(std::uint16_t tag) {
  return std::ranges::find(kKinds, tag, &TextKind::tag) != kKinds.end();
}

std::string NameOfText(std::uint16_t tag) {
  const auto found = std::ranges::find(kKinds, tag, &TextKind::tag);
  return found == kKinds.end() ? std::string() : std::string(found->name);
}

std::string TextAsUtf8(const std::string& text) {
  // What is no UTF-8 does not come back.
  return Utf8Of(std::u16string_view(Utf16Of(text))) == text ? text : Utf8OfLatin1(text);
}

std::optional<PngText> PngTextOf(std::string_view name, std::string_view data) {
  constexpr std::size_t kTime = 7;
  if (name == "tIME" && data.size() == kTime) return PngText{"DateTime", kDate, DateOf(data)};
  const std::size_t end = data.find('\0');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view keyword = data.substr(0, end);
  const auto text = TextOf(name, data.substr(end));
  if (!text) return std::nullopt;
  const auto known = std::ranges::find(kKinds, keyword, &TextKind::keyword);
  if (known != kKinds.end()) return PngText{std::string(known->name), known->tag, *text};
  return PngText{keyword == "Title" ? "DocumentName" : Utf8OfLatin1(keyword), 0, *text};
}

std::string PngChunksOf(const PictureTexts& texts) {
  std::string chunks;
  for (const TextKind& kind : kKinds) {
    const auto found = texts.find(kind.tag);
    if (found == texts.end()) continue;
    const std::string text = TextAsUtf8(found->second);
    const auto time = kind.tag == kDate ? TimeOf(text) : std::nullopt;
    const bool isPlain = std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    // Behind the keyword of the longer form: not packed, no language, no translated keyword.
    chunks += time ? PngChunk("tIME", *time)
                   : PngChunk(isPlain ? "tEXt" : "iTXt",
                              std::string(kind.keyword) + std::string(isPlain ? 1 : 5, '\0') + text);
  }
  return chunks;
}

std::map<std::uint16_t, TiffTag> TiffTagsOf(const PictureTexts& texts) {
  constexpr std::uint16_t kText = 2;
  std::map<std::uint16_t, TiffTag> tags;
  for (const auto& [tag, text] : texts)
    tags[tag] = {kText, text.size() + 1, text + '\0'};
  return tags;
}

}  // namespace vblur::host
