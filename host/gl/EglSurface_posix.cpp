#include "host/gl/EglSurface.h"

#include <array>
#include <cstdio>
#include <string>

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

[[noreturn]] void RefuseStep(const std::string& step) {
  Refuse(ExitCode::SomeFramesFailed, "no OpenGL that paints without a window",
         step + " (expected EGL with EGL_MESA_platform_surfaceless, as of the packages libegl1 and libgl1-mesa-dri)");
}

std::string EglError() {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "EGL error 0x%04x", static_cast<unsigned>(::eglGetError()));
  return text.data();
}

EGLDisplay OpenDisplay() {
  const auto getDisplay =
      reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(::eglGetProcAddress("eglGetPlatformDisplayEXT"));
  if (getDisplay == nullptr) RefuseStep("EGL knows no platforms");
  EGLDisplay display = getDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
  if (display == EGL_NO_DISPLAY) RefuseStep("no display without a surface, " + EglError());
  if (::eglInitialize(display, nullptr, nullptr) != EGL_TRUE) RefuseStep("the display cannot be opened, " + EglError());
  return display;
}

EGLContext MakeContext(EGLDisplay display) {
  if (::eglBindAPI(EGL_OPENGL_API) != EGL_TRUE) RefuseStep("EGL offers no desktop OpenGL");
  constexpr std::array<EGLint, 11> kWanted{EGL_SURFACE_TYPE,
                                           EGL_PBUFFER_BIT,
                                           EGL_RENDERABLE_TYPE,
                                           EGL_OPENGL_BIT,
                                           EGL_RED_SIZE,
                                           8,
                                           EGL_GREEN_SIZE,
                                           8,
                                           EGL_BLUE_SIZE,
                                           8,
                                           EGL_NONE};
  EGLConfig config = nullptr;
  EGLint count = 0;
  if (::eglChooseConfig(display, kWanted.data(), &config, 1, &count) != EGL_TRUE || count < 1) {
    RefuseStep("no configuration of 8 bits a colour, " + EglError());
  }
  constexpr std::array<EGLint, 7> kProfile{EGL_CONTEXT_MAJOR_VERSION,
                                           3,
                                           EGL_CONTEXT_MINOR_VERSION,
                                           0,
                                           EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                           EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT,
                                           EGL_NONE};
  EGLContext context = ::eglCreateContext(display, config, EGL_NO_CONTEXT, kProfile.data());
  if (context == EGL_NO_CONTEXT) RefuseStep("no context of OpenGL 3.0 with its compatibility profile, " + EglError());
  return context;
}

}  // namespace

// The display is shared by the process and never closed: EGL returns the same one to everybody.
struct EglSurface::Context {
  Context() : display(OpenDisplay()), context(MakeContext(display)) {}
  ~Context() { ::eglDestroyContext(display, context); }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  bool MakeCurrent() const { return ::eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context) == EGL_TRUE; }
  void LetGo() const { ::eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT); }

  EGLDisplay display;
  EGLContext context;
};

EglSurface::EglSurface(std::int32_t width, std::int32_t height) : context_(std::make_unique<Context>()) {
  const auto find = [](const char* name) { return reinterpret_cast<void*>(::eglGetProcAddress(name)); };
  if (!MakeFrameBuffer(find, width, height)) RefuseStep("no frame buffer of RGBA8, " + EglError());
}

EglSurface::~EglSurface() = default;

bool EglSurface::MakeCurrent() {
  return context_->MakeCurrent();
}

void EglSurface::LetGo() {
  context_->LetGo();
}

}  // namespace vblur::host
