#include "host/pages/ControlClasses.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur::host {

namespace {

constexpr int kFontPlace = 0;

// Keeps the font, as the system's own controls do.
LRESULT CALLBACK KeepFont(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETFONT) return GetWindowLongPtrW(window, kFontPlace);
  if (message != WM_SETFONT) return DefWindowProcW(window, message, wParam, lParam);
  SetWindowLongPtrW(window, kFontPlace, static_cast<LONG_PTR>(wParam));
  if (LOWORD(lParam) != 0) ::InvalidateRect(window, nullptr, TRUE);
  return 0;
}

void Register(const wchar_t* name, const wchar_t* cursor) {
  WNDCLASSEXW made{};
  made.cbSize = sizeof(made);
  // Found by dialogs of every module.
  made.style = CS_GLOBALCLASS | CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
  made.lpfnWndProc = &KeepFont;
  made.cbWndExtra = sizeof(LONG_PTR);
  made.hInstance = OwnModule();
  made.hCursor = LoadCursorW(nullptr, cursor);
  made.lpszClassName = name;
  RegisterClassExW(&made);
}

}  // namespace

void RegisterControlClasses() {
  static const bool kDone = [] {
    Register(L"dsnewnumberctrl", IDC_SIZEWE);
    Register(L"dsnewcolorchipctrl", IDC_HAND);
    return true;
  }();
  static_cast<void>(kDone);
}

::HINSTANCE__* OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const wchar_t*>(&RegisterControlClasses), &module);
  return module;
}

WindowFont::WindowFont(HDC dc, HWND window) : dc_(dc), before_(nullptr) {
  auto* font = reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0));
  if (font == nullptr) font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  before_ = ::SelectObject(dc_, font);
}

WindowFont::~WindowFont() {
  ::SelectObject(dc_, before_);
}

}  // namespace vblur::host
