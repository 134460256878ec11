#include "tests/support/window/CountedWindow.h"

#include "platform/Window.h"
#include "sdk/system/SystemTypes_windows.h"

namespace vblur::test {

namespace {

constexpr const wchar_t* kClass = L"VBlurCountedWindow";

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_PAINT) return ::DefWindowProcW(window, message, wParam, lParam);
  ::ValidateRect(window, nullptr);
  ++*reinterpret_cast<int*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  return 0;
}

HWND Open() {
  WNDCLASSW own{};
  own.lpfnWndProc = Answer;
  own.hInstance = ::GetModuleHandleW(nullptr);
  own.lpszClassName = kClass;
  ::RegisterClassW(&own);
  // Shown, since the system keeps no account of what is hidden.
  HWND window = ::CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kClass, L"", WS_POPUP, 0, 0, 8, 8, nullptr,
                                  nullptr, own.hInstance, nullptr);
  return window;
}

}  // namespace

struct CountedWindow::Counting {
  Counting() {
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&count));
    ::ShowWindow(window, SW_SHOWNOACTIVATE);
    ::ValidateRect(window, nullptr);
    count = 0;
  }
  ~Counting() { ::DestroyWindow(window); }
  Counting(const Counting&) = delete;
  Counting& operator=(const Counting&) = delete;

  int count = 0;
  HWND window = Open();
};

CountedWindow::CountedWindow() : counting_(std::make_unique<Counting>()) {}
CountedWindow::~CountedWindow() = default;

HWND CountedWindow::Handle() const {
  return counting_->window;
}

int CountedWindow::Invalidations() {
  ::UpdateWindow(counting_->window);
  return counting_->count;
}

}  // namespace vblur::test
