#include "host/viewer/ViewerWindow.h"

#include "platform/Window.h"
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur::host {

namespace {

constexpr const wchar_t* kClass = L"VBlurViewer";

HWND Open() {
  const HINSTANCE program = ::GetModuleHandleW(nullptr);
  WNDCLASSW own{};
  // OpenGL wants a device that stays the window's.
  own.style = CS_OWNDC | CS_HREDRAW | CS_VREDRAW;
  own.lpfnWndProc = ::DefWindowProcW;
  own.hInstance = program;
  own.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
  own.lpszClassName = kClass;
  // Fails for all but the first, which is the same.
  ::RegisterClassW(&own);
  return ::CreateWindowExW(0, kClass, L"", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, nullptr, nullptr, program, nullptr);
}

}  // namespace

struct ViewerWindow::System {
  System() = default;
  ~System() {
    if (window != nullptr) ::DestroyWindow(window);
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  HWND window = Open();
};

ViewerWindow::ViewerWindow() : system_(std::make_unique<System>()) {}
ViewerWindow::~ViewerWindow() = default;

HWND ViewerWindow::Handle() const {
  return system_->window;
}

bool ViewerWindow::IsInvalid() const {
  return ::GetUpdateRect(Handle(), nullptr, FALSE) != FALSE;
}

void ViewerWindow::Validate() {
  // Without a window it would be all windows.
  if (Handle() != nullptr) ::ValidateRect(Handle(), nullptr);
}

}  // namespace vblur::host
