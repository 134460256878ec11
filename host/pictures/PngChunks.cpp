#include "host/pictures/PngChunks.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include <OpenImageIO/tiffutils.h>

#include "host/files/AttributeNames.h"
#include "host/formats/PngHead.h"
#include "host/pictures/PictureFileMetadata.h"

namespace vblur::host {

namespace {

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The length of the UTF-8 character at a place; 0: it is none.
std::size_t Utf8Length(std::string_view text, std::size_t at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  const std::size_t length = byte < 0x80 ? 1 : byte >= 0xc2 && byte < 0xe0 ? 2 : byte >= 0xe0 && byte < 0xf0 ? 3 : 4;
  if ((byte >= 0x80 && byte < 0xc2) || byte > 0xf4 || at + length > text.size()) return 0;
  const auto rest = text.substr(at + 1, length - 1);
  const bool goesOn = std::ranges::all_of(rest, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; });
  if (!goesOn || length < 3) return goesOn ? length : 0;
  // Not written longer than it is, no half of a pair, and not beyond the last one.
  const auto second = static_cast<unsigned char>(text[at + 1]);
  const bool isRight = (byte != 0xe0 || second >= 0xa0) && (byte != 0xed || second < 0xa0) &&
                       (byte != 0xf0 || second >= 0x90) && (byte != 0xf4 || second < 0x90);
  return isRight ? length : 0;
}

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = Utf8Length(text, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string Utf8OfLatin1(std::string_view text) {
  std::string utf8;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80) utf8.push_back(static_cast<char>(0xc0 | byte >> 6));
    utf8.push_back(static_cast<char>(byte >= 0x80 ? 0x80 | (byte & 0x3f) : byte));
  }
  return utf8;
}

bool IsText(const OIIO::ParamValue& attribute) {
  return attribute.type() == OIIO::TypeDesc::STRING;
}

// The library's names of these keywords.
std::string KeywordOf(const std::string& name) {
  constexpr std::array<std::array<std::string_view, 2>, 3> kKeywords = {
      {{"Artist", "Author"}, {"ImageDescription", "Description"}, {"DocumentName", "Title"}}};
  const auto found = std::ranges::find_if(kKeywords, [&](const auto& each) { return each[0] == name; });
  return found == kKeywords.end() ? name : std::string((*found)[1]);
}

// Nothing for names that a chunk cannot have as its keyword.
std::optional<std::string> TextChunk(const OIIO::ParamValue& attribute) {
  const std::string keyword = KeywordOf(attribute.name().string());
  if (!IsPngKeyword(keyword)) return std::nullopt;
  const std::string text = attribute.get_string();
  // Behind the keyword: not compressed, no language, no translated keyword.
  return PngChunk("iTXt", keyword + std::string(5, '\0') + (IsUtf8(text) ? text : Utf8OfLatin1(text)));
}

bool BelongsToExif(const OIIO::ParamValue& attribute) {
  const auto group = GroupOf(attribute);
  return group == MetadataGroup::Exif || group == MetadataGroup::Gps || group == MetadataGroup::Orientation;
}

template <typename Test>
void EraseIf(OIIO::ImageSpec& spec, const Test& isGone) {
  auto& all = spec.extra_attribs;
  all.erase(std::remove_if(all.begin(), all.end(), isGone), all.end());
}

std::string TakeExif(OIIO::ImageSpec& spec) {
  OIIO::ImageSpec exif;
  for (const auto& attribute : spec.extra_attribs) {
    if (BelongsToExif(attribute)) exif.extra_attribs.push_back(attribute);
  }
  if (exif.extra_attribs.empty()) return {};
  std::vector<char> block;
  // Its big-endian blocks are damaged.
  OIIO::encode_exif(exif, block, OIIO::endian::little);
  OIIO::ImageSpec held;
  if (!OIIO::decode_exif(OIIO::string_view(block.data(), block.size()), held)) return {};
  // What the block does not hold goes on as a text.
  EraseIf(spec, [&](const OIIO::ParamValue& attribute) {
    return BelongsToExif(attribute) && held.find_attribute(attribute.name()) != nullptr;
  });
  return PngChunk("eXIf", std::string(block.data(), block.size()));
}

}  // namespace

std::string TakePngChunks(OIIO::ImageSpec& spec, const std::string& colour, const std::string& exif) {
  // The library writes its guess of the source's colours, and a text of it.
  EraseIf(spec, [](const OIIO::ParamValue& attribute) {
    return attribute.name() == "oiio:ColorSpace" || attribute.name() == "oiio:Gamma";
  });
  // A profile takes the place of the name of a colour space.
  std::string chunks = colour;
  constexpr std::size_t kSrgbChunk = 13;
  const auto srgb = colour.find("sRGB");
  if (spec.find_attribute("ICCProfile") != nullptr && srgb != std::string::npos) chunks.erase(srgb - 4, kSrgbChunk);
  if (exif.empty()) {
    chunks += TakeExif(spec);
  } else {
    EraseIf(spec, BelongsToExif);
    chunks += PngChunk("eXIf", exif);
  }
  EraseIf(spec, [&](const OIIO::ParamValue& attribute) {
    if (!IsText(attribute) || IsAscii(attribute.get_string())) return false;
    const auto chunk = TextChunk(attribute);
    if (chunk) chunks += *chunk;
    return chunk.has_value();
  });
  return chunks;
}

void MakePngTextsUtf8(OIIO::ImageSpec& spec) {
  for (auto& attribute : spec.extra_attribs) {
    if (!IsText(attribute) || IsUtf8(attribute.get_string())) continue;
    attribute = OIIO::ParamValue(attribute.name(), Utf8OfLatin1(attribute.get_string()));
  }
}

}  // namespace vblur::host
