// An OpenGL context of a window, on Windows.
#pragma once

#include "platform/GlFont.h"
#include "platform/Window.h"

#ifdef _WIN32
struct HGLRC__;  // the system's
#endif

namespace vblur::host {

#ifdef _WIN32
class WglContext {
 public:
  // The window is borrowed. Display lists are those of all contexts that live. Throws Failure (some frames failed),
  // naming the step, if the machine has no OpenGL for it.
  explicit WglContext(HWND window);
  ~WglContext();
  WglContext(const WglContext&) = delete;
  WglContext& operator=(const WglContext&) = delete;

  // False if the window has gone.
  bool MakeCurrent() const;
  void LetGo() const;
  // Shows what was painted on the window.
  void Swap() const;

  // Throws the Failure of a step, with the system's error.
  [[noreturn]] static void Refuse(const char* step);

 private:
  HWND window_;
  HDC device_;
  ::HGLRC__* context_;
};
#endif

}  // namespace vblur::host
