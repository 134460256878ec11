#include "platform/GlFont.h"

#include <utility>

#include "sdk/viewer/FontSource.h"
#include "sdk/viewer/PaintDevice.h"

namespace vblur {

namespace host {

namespace {

FontSource* fontSource = nullptr;

}  // namespace

void UseFontSource(FontSource* source) {
  fontSource = source;
}

}  // namespace host

HDC wglGetCurrentDC() {
  return host::CurrentDevice().surface;
}

HFONT CreateFontA(std::int32_t height, std::int32_t, std::int32_t, std::int32_t, std::int32_t weight, std::uint32_t,
                  std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
                  std::uint32_t, const char*) {
  return host::fontSource == nullptr ? nullptr : host::fontSource->Open(height, weight).release();
}

HFONT SelectObject(HDC dc, HFONT font) {
  host::PaintDevice& device = host::CurrentDevice();
  if (dc == nullptr || dc != device.surface) return nullptr;
  return std::exchange(device.font, font);
}

bool DeleteObject(HFONT font) {
  if (font == nullptr) return false;
  // Do not keep a deleted font selected.
  if (host::CurrentDevice().font == font) host::CurrentDevice().font = nullptr;
  delete font;
  return true;
}

bool wglUseFontBitmapsW(HDC dc, std::uint32_t first, std::uint32_t count, std::uint32_t listBase) {
  const host::PaintDevice& device = host::CurrentDevice();
  if (dc == nullptr || dc != device.surface || device.font == nullptr) return false;
  return device.font->FillLists(first, count, listBase);
}

}  // namespace vblur
