#include "platform/GlFont.h"

#include "sdk/system/SystemTypes_windows.h"
// After it, whose types it uses.
#include <GL/gl.h>

namespace vblur {

namespace {

// A list of a character without a picture, such as the space, only advances. Wine gives it a null picture, for which
// Mesa (22.3) refuses the whole list.
void FillEmptyLists(HDC dc, std::uint32_t first, std::uint32_t count, std::uint32_t listBase) {
  constexpr MAT2 kAsItIs{{0, 1}, {0, 0}, {0, 0}, {0, 1}};
  constexpr GLubyte kNothing = 0;
  // What Mesa said of them.
  ::glGetError();
  for (std::uint32_t i = 0; i < count; ++i) {
    GLYPHMETRICS character{};
    if (::GetGlyphOutlineW(dc, first + i, GGO_BITMAP, &character, 0, nullptr, &kAsItIs) != 0) continue;
    ::glNewList(listBase + i, GL_COMPILE);
    ::glBitmap(0, 0, 0.0F, 0.0F, character.gmCellIncX, character.gmCellIncY, &kNothing);
    ::glEndList();
  }
}

}  // namespace

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
  if (::wglUseFontBitmapsW(dc, first, count, listBase) == FALSE) return false;
  FillEmptyLists(dc, first, count, listBase);
  return true;
}

}  // namespace vblur
