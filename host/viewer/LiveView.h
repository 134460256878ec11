// A viewer's window for a user, on Windows: the rendered frame with the controls over it, which the mouse drags as a
// pen does. Escape and the window's button close it.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "host/viewer/ViewGeometry.h"
#include "host/viewer/ViewSession.h"
#include "platform/Window.h"

namespace vblur::host {

// Whether the system has such windows.
#ifdef _WIN32
inline constexpr bool kShowsViews = true;
#else
inline constexpr bool kShowsViews = false;
#endif

// Opens a view's window, and closes it when the user does or the session is stopped. Throws Failure like LiveView, and
// some frames failed where there are no windows.
void ShowUntilClosed(ViewSession& session, const std::string& title);

// On Windows. One at a time for a session, which paints on the window from then on. Belongs to the session's thread.
class LiveView {
 public:
  // Opens the window, as large as the session's view if the desktop has room for it. Throws Failure like
  // MakeWindowSurface, and what painting throws.
  LiveView(ViewSession& session, const std::string& title);
  // Hides the window.
  ~LiveView();
  LiveView(const LiveView&) = delete;
  LiveView& operator=(const LiveView&) = delete;

  // Until the user closes the window or the session is stopped. Throws what painting and dragging throw.
  void Run();
  // Handles the messages that wait. Throws likewise.
  void HandleMessages();

  bool IsOpen() const { return isOpen_; }
  HWND Window() const { return window_; }

 private:
  // What the system calls.
  struct Procedure;

  // Whether that was all; otherwise the system does what it usually does.
  bool Answer(UINT message, WPARAM wParam, LPARAM lParam);
  void Paint();
  void Resize(std::int32_t width, std::int32_t height);
  // At a pixel of the window, from its upper left corner.
  void Pen(PenEvent::Kind kind, std::int32_t x, std::int32_t y);
  void LiftPen();
  void InvalidateIfStale();
  void ThrowFailure();

  ViewSession& session_;
  HWND window_;
  bool isOpen_ = true;
  bool isPenDown_ = false;
  FramePoint penPlace_;
  std::exception_ptr failure_;
};

}  // namespace vblur::host
