#include "host/viewer/LiveView.h"

#include <algorithm>
#include <utility>

#include "host/base/Utf8.h"
#include "host/viewer/WindowSurface.h"
// After those of the project, whose names its macros would replace.
#include <windows.h>
#include <windowsx.h>

namespace vblur::host {

namespace {

// How long the end of a session may go unnoticed, in milliseconds.
constexpr DWORD kPatience = 100;

void SetViewSize(HWND window, std::int32_t width, std::int32_t height) {
  RECT outer{0, 0, width, height};
  ::AdjustWindowRectEx(&outer, WS_OVERLAPPEDWINDOW, FALSE, 0);
  ::SetWindowPos(window, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

SIZE ViewSizeOf(HWND window) {
  RECT inner{};
  ::GetClientRect(window, &inner);
  return {std::max<LONG>(inner.right, 1), std::max<LONG>(inner.bottom, 1)};
}

}  // namespace

struct LiveView::Procedure {
  static LRESULT CALLBACK Call(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const view = reinterpret_cast<LiveView*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    // Nothing may be thrown through the system's functions.
    try {
      if (view->Answer(message, wParam, lParam)) return 0;
    } catch (...) {
      view->failure_ = std::current_exception();
      view->isOpen_ = false;
      return 0;
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
  }

  static void Set(HWND window, WNDPROC procedure, LiveView* view) {
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(view));
    ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
  }
};

void ShowUntilClosed(ViewSession& session, const std::string& title) {
  LiveView(session, title).Run();
}

LiveView::LiveView(ViewSession& session, const std::string& title) : session_(session), window_(session.Window()) {
  const ViewGeometry& geometry = session_.Geometry();
  SetViewSize(window_, geometry.SurfaceWidth(), geometry.SurfaceHeight());
  const SIZE size = ViewSizeOf(window_);
  session_.PaintOn(MakeWindowSurface(window_, size.cx, size.cy));
  session_.Resize(size.cx, size.cy);
  ::SetWindowTextW(window_, reinterpret_cast<const wchar_t*>(Utf16Of(title).c_str()));
  Procedure::Set(window_, Procedure::Call, this);
  ::ShowWindow(window_, SW_SHOWNORMAL);
  ::SetForegroundWindow(window_);
}

LiveView::~LiveView() {
  // Tells that the capture has changed, which lifts the pen.
  if (isPenDown_) ::ReleaseCapture();
  ::ShowWindow(window_, SW_HIDE);
  Procedure::Set(window_, ::DefWindowProcW, nullptr);
}

void LiveView::Run() {
  HandleMessages();
  while (isOpen_ && !session_.IsStopped()) {
    ::MsgWaitForMultipleObjectsEx(0, nullptr, kPatience, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    HandleMessages();
  }
}

void LiveView::HandleMessages() {
  ThrowFailure();
  MSG message;
  InvalidateIfStale();
  while (isOpen_ && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    if (message.message == WM_QUIT) isOpen_ = false;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
    ThrowFailure();
    InvalidateIfStale();
  }
}

void LiveView::InvalidateIfStale() {
  if (session_.IsInvalid()) ::InvalidateRect(window_, nullptr, FALSE);
}

void LiveView::ThrowFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

bool LiveView::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
  const std::int32_t x = GET_X_LPARAM(lParam);
  const std::int32_t y = GET_Y_LPARAM(lParam);
  switch (message) {
    case WM_ERASEBKGND: return true;
    case WM_PAINT: Paint(); return true;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Resize(LOWORD(lParam), HIWORD(lParam));
      return true;
    case WM_MOUSEMOVE: Pen(PenEvent::Kind::Move, x, y); return true;
    case WM_LBUTTONDOWN: Pen(PenEvent::Kind::Down, x, y); return true;
    case WM_LBUTTONUP: Pen(PenEvent::Kind::Up, x, y); return true;
    case WM_CAPTURECHANGED: LiftPen(); return true;
    case WM_KEYDOWN:
      if (wParam != VK_ESCAPE) return false;
      isOpen_ = false;
      return true;
    case WM_CLOSE: isOpen_ = false; return true;
    default: return false;
  }
}

void LiveView::Paint() {
  PAINTSTRUCT painted;
  ::BeginPaint(window_, &painted);
  ::EndPaint(window_, &painted);
  session_.Show();
}

void LiveView::Resize(std::int32_t width, std::int32_t height) {
  if (width < 1 || height < 1) return;
  session_.Resize(width, height);
}

void LiveView::Pen(PenEvent::Kind kind, std::int32_t x, std::int32_t y) {
  if (kind == PenEvent::Kind::Up && !isPenDown_) return;
  const ViewGeometry& geometry = session_.Geometry();
  // The middle of the pixel, y upwards.
  penPlace_ = geometry.ToFrame({x + 0.5, geometry.SurfaceHeight() - y - 0.5});
  if (kind == PenEvent::Kind::Up) {
    // Tells that the capture has changed, which lifts the pen.
    ::ReleaseCapture();
    return;
  }
  PenEvent event;
  event.kind = kind;
  event.point = penPlace_;
  if (kind == PenEvent::Kind::Down) {
    LiftPen();
    ::SetCapture(window_);
    isPenDown_ = true;
  }
  event.button = isPenDown_ ? 1 : 0;
  session_.Apply(event);
}

// Also where another window takes the mouse in the middle of a drag, which ends there.
void LiveView::LiftPen() {
  if (!std::exchange(isPenDown_, false)) return;
  PenEvent event;
  event.kind = PenEvent::Kind::Up;
  event.point = penPlace_;
  event.button = 1;
  session_.Apply(event);
}

}  // namespace vblur::host
