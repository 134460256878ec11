// Recorder of the font functions that the overlay calls.
#include "platform/GlFont.h"
#include "tests/support/gl/GlCalls.h"

namespace vblur {

namespace test {
namespace {

// What is behind the handles, whose own types are the system's.
struct Font {};
struct Context {};

HFONT handleOf(Font* font) {
  return reinterpret_cast<HFONT>(font);
}

Font theSystemFont;
HFONT const systemFont = handleOf(&theSystemFont);
HFONT selected = systemFont;
Context context;

std::string nameOfDevice(HDC dc) {
  if (dc == recordedContext()) return "dc";
  return dc == nullptr ? "null" : "ANOTHER DC";
}

std::string nameOfFont(HFONT font) {
  if (font == nullptr) return "null";
  if (font == systemFont) return "system font";
  return gl::recorder().fonts.count(font) != 0 ? "font" : "NO FONT";
}

}  // namespace

HDC recordedContext() {
  return reinterpret_cast<HDC>(&context);
}

}  // namespace test

HDC wglGetCurrentDC() {
  HDC dc = test::gl::recorder().faults.noContext ? nullptr : test::recordedContext();
  test::gl::answer("wglGetCurrentDC", test::nameOfDevice(dc));
  return dc;
}

HFONT CreateFontA(std::int32_t height, std::int32_t width, std::int32_t escapement, std::int32_t orientation,
                  std::int32_t weight, std::uint32_t italic, std::uint32_t underline, std::uint32_t strikeOut,
                  std::uint32_t charSet, std::uint32_t outPrecision, std::uint32_t clipPrecision, std::uint32_t quality,
                  std::uint32_t pitchAndFamily, const char* face) {
  HFONT font = nullptr;
  if (!test::gl::recorder().faults.noFont) {
    font = test::handleOf(new test::Font);
    test::gl::recorder().fonts.insert(font);
  }
  test::gl::answer("CreateFontA", test::nameOfFont(font), height, width, escapement, orientation, weight, italic,
                   underline, strikeOut, charSet, outPrecision, clipPrecision, quality, pitchAndFamily,
                   '"' + std::string(face) + '"');
  return font;
}

HFONT SelectObject(HDC dc, HFONT font) {
  HFONT const before = test::selected;
  test::gl::answer("SelectObject", test::nameOfFont(before), test::nameOfDevice(dc), test::nameOfFont(font));
  test::selected = font;
  return before;
}

bool DeleteObject(HFONT font) {
  test::gl::call("DeleteObject", test::nameOfFont(font));
  if (test::gl::recorder().fonts.erase(font) == 0) return false;
  if (test::selected == font) test::selected = test::systemFont;
  delete reinterpret_cast<test::Font*>(font);
  return true;
}

bool wglUseFontBitmapsW(HDC dc, std::uint32_t first, std::uint32_t count, std::uint32_t listBase) {
  const bool made = !test::gl::recorder().faults.noBitmaps && dc != nullptr && test::selected != nullptr;
  test::gl::answer("wglUseFontBitmapsW", made ? 1 : 0, test::nameOfDevice(dc), first, count, listBase);
  return made;
}

}  // namespace vblur
