// Display lists of a font's characters, under the names of the system that has them built in. Elsewhere the
// host's SDK library makes them from a font of the system.
#pragma once

#include <cstdint>

namespace vblur {

// What the thread paints on with OpenGL.
using HDC = void*;
using HFONT = struct OverlayFont*;

// Null when no OpenGL context is current.
HDC wglGetCurrentDC();

// A font `height` pixels high, of a weight from 100 to 900; null when the system has none. Zero leaves a
// choice to the system.
HFONT CreateFontA(std::int32_t height, std::int32_t width, std::int32_t escapement, std::int32_t orientation,
                  std::int32_t weight, std::uint32_t italic, std::uint32_t underline, std::uint32_t strikeOut,
                  std::uint32_t charSet, std::uint32_t outPrecision, std::uint32_t clipPrecision, std::uint32_t quality,
                  std::uint32_t pitchAndFamily, const char* face);
// Chooses the font of a device; the one before it is returned.
HFONT SelectObject(HDC dc, HFONT font);
bool DeleteObject(HFONT font);

// Fills the display lists from `listBase` on with the bitmaps of `count` characters of the chosen font; each
// list moves the raster position on by the width of its character. False when there is no font or a character
// cannot be drawn.
bool wglUseFontBitmapsW(HDC dc, std::uint32_t first, std::uint32_t count, std::uint32_t listBase);

}  // namespace vblur
