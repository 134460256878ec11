// Surfaces of OpenGL on Windows: of the viewer's window, and in memory, with a hidden window for the context.
#include <utility>

#include "host/gl/GlSurface.h"
#include "host/gl/WglContext.h"
#include "host/viewer/OffScreenSurface.h"
#include "host/viewer/ViewerWindow.h"
#include "host/viewer/WindowSurface.h"
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur::host {

namespace {

void* FindGl(const char* name) {
  return reinterpret_cast<void*>(::wglGetProcAddress(name));
}

class WglSurface : public GlSurface {
 public:
  WglSurface(HWND window, std::int32_t width, std::int32_t height) : context_(window) {
    if (!MakeFrameBuffer(FindGl, width, height)) WglContext::Refuse("no frame buffer of RGBA8");
  }
  ~WglSurface() override { DeleteFrameBuffer(); }
  WglSurface(const WglSurface&) = delete;
  WglSurface& operator=(const WglSurface&) = delete;

  void Present() override {
    if (!MakeCurrent()) return;
    CopyToWindow();
    context_.Swap();
    LetGo();
  }

 protected:
  bool MakeCurrent() override { return context_.MakeCurrent(); }
  void LetGo() override { context_.LetGo(); }

 private:
  WglContext context_;
};

class OffScreenSurface : private ViewerWindow, public WglSurface {
 public:
  OffScreenSurface(std::int32_t width, std::int32_t height) : WglSurface(Handle(), width, height) {}

  void Present() override {}
};

}  // namespace

std::unique_ptr<ViewerSurface> MakeOffScreenSurface(std::int32_t width, std::int32_t height) {
  return std::make_unique<OffScreenSurface>(width, height);
}

std::unique_ptr<ViewerSurface> MakeWindowSurface(HWND window, std::int32_t width, std::int32_t height) {
  return std::make_unique<WglSurface>(window, width, height);
}

}  // namespace vblur::host
