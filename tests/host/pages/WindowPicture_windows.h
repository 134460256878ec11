// What windows show, pixel by pixel.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "tests/host/pages/SystemWindows_windows.h"

namespace vblur::host {

struct Picture {
  LONG width = 0;
  LONG height = 0;
  std::vector<std::uint32_t> pixels;  // blue, green, red, from the bottom up

  // From the top left.
  COLORREF At(LONG x, LONG y) const {
    const std::uint32_t pixel = pixels.at(static_cast<std::size_t>((height - 1 - y) * width + x));
    return RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
  }
  // Pixels of this colour in part of it.
  LONG Count(COLORREF colour, const RECT& area) const {
    LONG count = 0;
    for (LONG y = area.top; y < area.bottom; ++y) {
      for (LONG x = area.left; x < area.right; ++x)
        count += At(x, y) == colour ? 1 : 0;
    }
    return count;
  }
};

// What is drawn into a bitmap in memory, white at first.
inline Picture PictureDrawn(LONG width, LONG height, const std::function<void(HDC)>& draw) {
  Picture picture{width, height, {}};
  picture.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const HDC screen = ::GetDC(nullptr);
  const HDC memory = ::CreateCompatibleDC(screen);
  const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ before = ::SelectObject(memory, bitmap);
  ::PatBlt(memory, 0, 0, width, height, WHITENESS);
  draw(memory);
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  ::SelectObject(memory, before);
  ::GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), picture.pixels.data(), &info, DIB_RGB_COLORS);
  ::DeleteObject(bitmap);
  ::DeleteDC(memory);
  ::ReleaseDC(nullptr, screen);
  return picture;
}

inline RECT AreaOf(HWND window) {
  RECT area{};
  ::GetClientRect(window, &area);
  return area;
}

// What a window shows on the screen, without its frame.
inline Picture PictureOf(HWND window) {
  const RECT area = AreaOf(window);
  return PictureDrawn(area.right, area.bottom, [&](HDC dc) {
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    const HDC shown = ::GetDC(window);
    ::BitBlt(dc, 0, 0, area.right, area.bottom, shown, 0, 0, SRCCOPY);
    ::ReleaseDC(window, shown);
  });
}

// What it prints of itself.
inline Picture PrintOf(HWND window) {
  const RECT area = AreaOf(window);
  return PictureDrawn(area.right, area.bottom, [&](HDC dc) {
    ::SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
  });
}

}  // namespace vblur::host
