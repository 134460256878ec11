// A library's module handle, and the texts, bitmaps and dialogs loaded from it by number. On Windows they are the
// resources of its file, which the build makes from such a record; elsewhere the handle is the record, and sdk/effects
// loads from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#ifdef _WIN32
struct HINSTANCE__;  // the system's
struct HBITMAP__;
#endif

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

// The system's window class of a control.
enum class ModuleControlKind : std::uint8_t {
  Static,  // a text; the host makes one with ";class=NAME" of its own class
  Group,   // a frame with a title
  PushButton,
  CheckBox,
  List,     // a combo box that drops down
  Picture,  // a bitmap of the module
};

// Positions and sizes are in dialog units, y downwards from the top of the dialog.
struct ModuleControl {
  static constexpr std::int32_t kNoId = -1;

  std::int32_t id = kNoId;
  ModuleControlKind kind = ModuleControlKind::Static;
  std::string_view text;  // ASCII
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::uint32_t style = 0;  // the system's style bits
  std::int32_t bitmap = 0;  // of a picture
};

struct ModuleDialog {
  std::int32_t id = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::string_view font;
  std::int32_t fontPoints = 0;
  std::uint32_t style = 0;
  std::span<const ModuleControl> controls;  // in the order of the tabulator key
};

struct Module {
  std::span<const ModuleString> strings;
  std::span<const ModuleBitmap> bitmaps;
  std::span<const ModuleDialog> dialogs{};
};

#ifdef _WIN32
using HMODULE = ::HINSTANCE__*;
using HBITMAP = ::HBITMAP__*;
#else
using HMODULE = const Module*;
using HBITMAP = const ModuleBitmap*;
#endif

// Copies a zero-terminated text of at most `capacity` characters, cut to fit. Returns its length, 0 if the module lacks
// it.
std::int32_t LoadStringW(HMODULE module, std::int32_t id, char16_t* buffer, std::int32_t capacity);
// Null when the module has no such picture. On Windows it is the caller's, for DeleteObject.
HBITMAP LoadBitmapW(HMODULE module, std::int32_t id);
#ifndef _WIN32
// Null when the module has no such dialog.
const ModuleDialog* FindDialog(HMODULE module, std::int32_t id);
#endif

}  // namespace vblur
