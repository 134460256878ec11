#include "platform/GlFont.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur {

HDC wglGetCurrentDC() {
  return ::wglGetCurrentDC();
}

HFONT CreateFontA(std::int32_t height, std::int32_t width, std::int32_t escapement, std::int32_t orientation,
                  std::int32_t weight, std::uint32_t italic, std::uint32_t underline, std::uint32_t strikeOut,
                  std::uint32_t charSet, std::uint32_t outPrecision, std::uint32_t clipPrecision, std::uint32_t quality,
                  std::uint32_t pitchAndFamily, const char* face) {
  return ::CreateFontA(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                       outPrecision, clipPrecision, quality, pitchAndFamily, face);
}

HFONT SelectObject(HDC dc, HFONT font) {
  return static_cast<HFONT>(::SelectObject(dc, font));
}

bool DeleteObject(HFONT font) {
  return ::DeleteObject(font) != FALSE;
}

bool wglUseFontBitmapsW(HDC dc, std::uint32_t first, std::uint32_t count, std::uint32_t listBase) {
  return ::wglUseFontBitmapsW(dc, first, count, listBase) != FALSE;
}

}  // namespace vblur
