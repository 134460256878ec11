#include "host/base/Utf8.h"

#include <cstddef>

namespace vblur::host {
namespace {

constexpr bool IsHighHalf(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool IsLowHalf(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

// The character at a place, which moves past it.
char32_t TakeCharacter(std::u16string_view text, std::size_t& at) {
  const char32_t unit = text[at++];
  if (IsHighHalf(unit) && at < text.size() && IsLowHalf(text[at])) {
    return 0x10000 + ((unit - 0xD800) << 10) + (char32_t{text[at++]} - 0xDC00);
  }
  return IsHighHalf(unit) || IsLowHalf(unit) ? 0xFFFD : unit;
}

// Bytes that follow the first one of a character; -1 for one that begins none.
int FollowingBytes(unsigned char first) {
  if (first < 0x80) return 0;
  if (first >= 0xC2 && first < 0xE0) return 1;
  if (first >= 0xE0 && first < 0xF0) return 2;
  return first >= 0xF0 && first < 0xF5 ? 3 : -1;
}

// The character at a place, which moves past it; U+FFFD and a single byte for none.
char32_t TakeCharacter(std::string_view text, std::size_t& at) {
  constexpr char32_t kNone = 0xFFFD;
  const auto first = static_cast<unsigned char>(text[at++]);
  const int following = FollowingBytes(first);
  if (following < 0 || text.size() - at < static_cast<std::size_t>(following)) return kNone;
  if (following == 0) return first;
  char32_t character = first & (0x3Fu >> following);
  for (int i = 0; i < following; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + static_cast<std::size_t>(i)]);
    if ((byte & 0xC0) != 0x80) return kNone;
    character = character << 6 | (byte & 0x3Fu);
  }
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  if (character < kLeast[following] || character > 0x10FFFF || IsHighHalf(character) || IsLowHalf(character)) {
    return kNone;
  }
  at += static_cast<std::size_t>(following);
  return character;
}

}  // namespace

std::string Utf8Of(std::u16string_view text) {
  std::string result;
  const auto append = [&](char32_t byte) { result.push_back(static_cast<char>(byte)); };
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = TakeCharacter(text, at);
    if (character < 0x80) {
      append(character);
      continue;
    }
    const int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr char32_t kFirstByte[] = {0, 0xC0, 0xE0, 0xF0};
    append(kFirstByte[following] | character >> 6 * following);
    for (int left = following - 1; left >= 0; --left)
      append(0x80 | (character >> 6 * left & 0x3F));
  }
  return result;
}

std::u16string Utf16Of(std::string_view text) {
  std::u16string result;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = TakeCharacter(text, at);
    if (character < 0x10000) {
      result.push_back(static_cast<char16_t>(character));
      continue;
    }
    result.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)));
    result.push_back(static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF)));
  }
  return result;
}

}  // namespace vblur::host
