// A library's module handle, and the texts and pictures that can be loaded from it by number. Off
// Windows a module states its resources in this record; the host's SDK library loads from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vblur {

struct ModuleString {
  std::int32_t id = 0;
  std::string_view text;  // ASCII
};

// Rows from top to bottom, red, green, blue, alpha of 8 bits, alpha not multiplied in.
struct ModuleBitmap {
  std::int32_t id = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::span<const std::uint8_t> pixels;
};

struct Module {
  std::span<const ModuleString> strings;
  std::span<const ModuleBitmap> bitmaps;
};

using HMODULE = const Module*;

// Puts a text and the zero behind it into a buffer of `capacity` characters, cut short where it does not
// fit. Returns how many characters of the text were put: 0 when the module has no such text.
std::int32_t LoadStringW(HMODULE module, std::int32_t id, char16_t* buffer, std::int32_t capacity);
// Null when the module has no such picture.
const ModuleBitmap* LoadBitmapW(HMODULE module, std::int32_t id);

}  // namespace vblur
