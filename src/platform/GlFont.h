// Display lists of a font's characters, under their Windows names. On Windows the system makes them, elsewhere
// sdk/viewer.
#pragma once

#include <cstdint>

#ifdef _WIN32
struct HDC__;  // the system's
struct HFONT__;
#endif

namespace vblur {

#ifdef _WIN32
using HDC = ::HDC__*;
using HFONT = ::HFONT__*;
#else
// What the thread's OpenGL context paints on.
using HDC = void*;
using HFONT = struct OverlayFont*;
#endif

// Null when no OpenGL context is current.
HDC wglGetCurrentDC();

// A font of `height` pixels and a weight from 100 to 900; null when the system has none. Zero: the system chooses.
HFONT CreateFontA(std::int32_t height, std::int32_t width, std::int32_t escapement, std::int32_t orientation,
                  std::int32_t weight, std::uint32_t italic, std::uint32_t underline, std::uint32_t strikeOut,
                  std::uint32_t charSet, std::uint32_t outPrecision, std::uint32_t clipPrecision, std::uint32_t quality,
                  std::uint32_t pitchAndFamily, const char* face);
// Selects a device's font and returns the previous one.
HFONT SelectObject(HDC dc, HFONT font);
bool DeleteObject(HFONT font);

// Fills `count` display lists from `listBase` on with the bitmaps of characters of the selected font; each list
// advances the raster position by its character's width. False without a font, or if a character cannot be drawn.
bool wglUseFontBitmapsW(HDC dc, std::uint32_t first, std::uint32_t count, std::uint32_t listBase);

}  // namespace vblur
