#include "host/formats/PngProfileText.h"

#include <algorithm>
#include <cstdint>

#include "host/base/NameMatch.h"
#include "host/formats/Unpacked.h"

namespace vblur::host {

namespace {

int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// A line with a name, one with the number of bytes, and the bytes as pairs of digits.
std::optional<std::string> BytesOf(std::string_view text) {
  constexpr std::string_view kBlank = " \n\r\t";
  const auto skip = [&](std::size_t to) { text.remove_prefix(std::min(to, text.size())); };
  skip(text.find_first_not_of(kBlank));
  skip(text.find_first_of(kBlank));
  skip(text.find_first_not_of(kBlank));
  std::size_t length = 0;
  for (; !text.empty() && text.front() >= '0' && text.front() <= '9' && length <= kLongestExifText; skip(1))
    length = 10 * length + static_cast<std::size_t>(text.front() - '0');
  std::string bytes;
  int high = -1;
  for (const char c : text) {
    if (kBlank.find(c) != std::string_view::npos) continue;
    const int digit = DigitOf(c);
    if (digit < 0 || bytes.size() == length) return std::nullopt;
    if (high >= 0) bytes.push_back(static_cast<char>(high << 4 | digit));
    high = high >= 0 ? -1 : digit;
  }
  return bytes.size() == length && high < 0 ? std::optional(bytes) : std::nullopt;
}

}  // namespace

bool IsExifText(std::string_view data) {
  constexpr std::string_view kKeyword("Raw profile type exif\0", kExifKeyword);
  return EqualIgnoringCase(data.substr(0, kExifKeyword), kKeyword);
}

std::optional<std::string> ExifOfText(std::string_view name, std::string_view data) {
  if (name != "tEXt" && name != "zTXt") return std::nullopt;
  std::string_view text = data.substr(std::min(data.size(), data.find('\0')));
  // Behind the keyword: its end, and how it is packed.
  text.remove_prefix(std::min<std::size_t>(text.size(), name == "zTXt" ? 2 : 1));
  const std::optional<std::string> unpacked = name == "zTXt" ? Unpacked(text, kLongestExifText) : std::nullopt;
  if (name == "zTXt" && !unpacked) return std::nullopt;
  const auto bytes = BytesOf(unpacked ? *unpacked : text);
  // As JPEG files have them; the library takes no others.
  constexpr std::string_view kJpeg("Exif\0\0", 6);
  return bytes && bytes->starts_with(kJpeg) ? std::optional(bytes->substr(kJpeg.size())) : std::nullopt;
}

}  // namespace vblur::host
