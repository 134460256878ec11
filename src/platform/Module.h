// A library's module handle, and the texts and bitmaps loaded from it by number. Off Windows a module lists its
// resources in this record, and sdk/effects loads them.
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

// 8-bit RGBA, rows from the top down, straight alpha.
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

// Copies a zero-terminated text of at most `capacity` characters, cut to fit. Returns its length, 0 if the module lacks
// it.
std::int32_t LoadStringW(HMODULE module, std::int32_t id, char16_t* buffer, std::int32_t capacity);
// Null when the module has no such picture.
const ModuleBitmap* LoadBitmapW(HMODULE module, std::int32_t id);

}  // namespace vblur
