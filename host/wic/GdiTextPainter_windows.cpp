#include "host/wic/GdiTextPainter.h"

#include <map>
#include <new>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/Utf8.h"

#include <windows.h>

namespace vblur::host {

namespace {

std::wstring WideOf(const std::string& text) {
  const std::u16string units = Utf16Of(text);
  return {units.begin(), units.end()};
}

// The first of these that the system has: it puts another in place of one that it does not have.
::HFONT MakeFont(::HDC device, std::int32_t size, int weight) {
  for (const wchar_t* const face : {L"Segoe UI", L"DejaVu Sans", L"Tahoma", L""}) {
    const ::HFONT font = ::CreateFontW(-size, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_TT_PRECIS,
                                       CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_SWISS, face);
    const ::HGDIOBJ before = ::SelectObject(device, font);
    wchar_t found[LF_FACESIZE] = L"";
    ::GetTextFaceW(device, LF_FACESIZE, found);
    ::SelectObject(device, before);
    if (face[0] == L'\0' || std::wstring_view(found) == face) return font;
    ::DeleteObject(font);
  }
  return nullptr;
}

// White text on black, as a picture of grey values.
class Ink {
 public:
  Ink(::HDC device, std::int32_t width, std::int32_t height) : device_(device), width_(width) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    bitmap_ = ::CreateDIBSection(device, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<const std::uint32_t*>(bits);
    before_ = ::SelectObject(device, bitmap_);
  }
  ~Ink() {
    ::SelectObject(device_, before_);
    ::DeleteObject(bitmap_);
  }
  Ink(const Ink&) = delete;
  Ink& operator=(const Ink&) = delete;

  bool IsMade() const { return bits_ != nullptr; }
  // From 0 to 255.
  std::uint32_t At(std::int32_t x, std::int32_t y) const {
    return bits_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)] & 0xffu;
  }

 private:
  ::HDC device_;
  std::int32_t width_;
  ::HBITMAP bitmap_ = nullptr;
  ::HGDIOBJ before_ = nullptr;
  const std::uint32_t* bits_ = nullptr;
};

void Blend(std::uint8_t& value, std::uint8_t colour, std::uint32_t ink) {
  value = static_cast<std::uint8_t>((value * (255u - ink) + colour * ink + 127u) / 255u);
}

}  // namespace

struct GdiTextPainter::Fonts {
  Fonts() : device(::CreateCompatibleDC(nullptr)) {}
  ~Fonts() {
    for (const auto& [key, font] : fonts)
      ::DeleteObject(font);
    ::DeleteDC(device);
  }
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

  // Selects the font of a style; the one before stays selected until the next.
  void Select(const TextStyle& style) {
    ::HFONT& font = fonts[{style.size, style.weight}];
    if (font == nullptr) font = MakeFont(device, style.size, style.weight == TextWeight::Bold ? FW_BOLD : FW_NORMAL);
    if (font != nullptr) ::SelectObject(device, font);
  }

  ::HDC device;
  std::map<std::pair<std::int32_t, TextWeight>, ::HFONT> fonts;
};

GdiTextPainter::GdiTextPainter() : fonts_(std::make_unique<Fonts>()) {
  if (fonts_->device == nullptr || Measure("x", TextStyle{}) <= 0)
    Refuse(ExitCode::CannotRead, "text", "the system has no font to draw it with");
}

GdiTextPainter::~GdiTextPainter() {
  // A selected font cannot be deleted.
  if (fonts_->device != nullptr) ::SelectObject(fonts_->device, ::GetStockObject(SYSTEM_FONT));
}

std::int32_t GdiTextPainter::Measure(const std::string& text, const TextStyle& style) const {
  fonts_->Select(style);
  const std::wstring wide = WideOf(text);
  SIZE size{};
  if (::GetTextExtentPoint32W(fonts_->device, wide.c_str(), static_cast<int>(wide.size()), &size) == FALSE) return 0;
  return size.cx;
}

void GdiTextPainter::Draw(Canvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                          const TextStyle& style) const {
  const std::wstring wide = WideOf(text);
  // Letters reach over their ends.
  const std::int32_t margin = style.size;
  const std::int32_t width = Measure(text, style) + 2 * margin;
  const std::int32_t above = 2 * style.size;
  const std::int32_t height = 3 * style.size;
  const Ink ink(fonts_->device, width, height);
  if (!ink.IsMade()) throw std::bad_alloc();
  ::SetTextColor(fonts_->device, RGB(255, 255, 255));
  ::SetBkMode(fonts_->device, TRANSPARENT);
  ::SetTextAlign(fonts_->device, TA_LEFT | TA_BASELINE);
  ::ExtTextOutW(fonts_->device, margin, above, 0, nullptr, wide.c_str(), static_cast<UINT>(wide.size()), nullptr);
  ::GdiFlush();
  const CanvasPixel colour = PixelOf(style.colour);
  for (std::int32_t row = 0; row < height; ++row) {
    for (std::int32_t column = 0; column < width; ++column) {
      const std::uint32_t amount = ink.At(column, row);
      CanvasPixel* const pixel = amount == 0 ? nullptr : canvas.At(x - margin + column, y - above + row);
      for (std::size_t c = 0; pixel != nullptr && c < 3; ++c)
        Blend((*pixel)[c], colour[c], amount);
    }
  }
}

}  // namespace vblur::host
