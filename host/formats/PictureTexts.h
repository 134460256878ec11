// Texts that files of several formats hold, each in its own way: what a picture shows, who made it, and when.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "host/formats/TiffTags.h"

namespace vblur::host {

// The description, the program, the date, the artist and the copyright as UTF-8, by their tags in TIFF files and Exif
// data.
using PictureTexts = std::map<std::uint16_t, std::string>;

// The five above.
bool IsPictureText(std::uint16_t tag);
// Their names, as in "ImageDescription".
std::string NameOfText(std::uint16_t tag);

struct PngText {
  std::string name;       // the keyword, or what texts of that keyword are called elsewhere
  std::uint16_t tag = 0;  // 0: none of the five
  std::string text;       // UTF-8
};
// The text or the time (tIME) in the data of a chunk of this name; nothing for a damaged one and for other chunks.
std::optional<PngText> PngTextOf(std::string_view name, std::string_view data);

// Of texts as other formats have them: UTF-8, or else Latin-1.
std::string TextAsUtf8(const std::string& text);

// Whole chunks of a PNG file.
std::string PngChunksOf(const PictureTexts& texts);
std::map<std::uint16_t, TiffTag> TiffTagsOf(const PictureTexts& texts);

}  // namespace vblur::host
