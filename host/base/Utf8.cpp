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

}  // namespace vblur::host
