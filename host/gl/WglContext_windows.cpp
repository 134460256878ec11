#include "host/gl/WglContext.h"

#include <string>
#include <vector>

#include "host/base/Failure.h"
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur::host {

namespace {

// Each new context shares the lists of the first, so that a tool keeps its font when a view changes surfaces.
std::vector<HGLRC>& Living() {
  static std::vector<HGLRC> contexts;
  return contexts;
}

// Throws for a device without OpenGL of its own.
void ChooseFormat(HDC device) {
  PIXELFORMATDESCRIPTOR wanted{};
  wanted.nSize = sizeof wanted;
  wanted.nVersion = 1;
  wanted.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
  wanted.iPixelType = PFD_TYPE_RGBA;
  wanted.cColorBits = 24;
  wanted.cAlphaBits = 8;
  const int format = ::ChoosePixelFormat(device, &wanted);
  if (format == 0) WglContext::Refuse("no pixel format of 8 bits a colour");
  // A window keeps the first that it gets.
  if (::GetPixelFormat(device) == 0 && ::SetPixelFormat(device, format, &wanted) == FALSE) {
    WglContext::Refuse("the window takes no pixel format");
  }
}

}  // namespace

void WglContext::Refuse(const char* step) {
  const auto error = ::GetLastError();
  host::Refuse(ExitCode::SomeFramesFailed, "no OpenGL that paints the viewer",
               std::string(step) + ", Windows error " + std::to_string(error) +
                   " (expected OpenGL 3.0 with its compatibility profile, as of a display's driver)");
}

WglContext::WglContext(HWND window) : window_(window), device_(::GetDC(window)), context_(nullptr) {
  // The null window's would be the screen's.
  if (window == nullptr) Refuse("no window");
  if (device_ == nullptr) Refuse("the window has no device");
  try {
    ChooseFormat(device_);
    context_ = ::wglCreateContext(device_);
    if (context_ == nullptr) Refuse("no context");
    if (!Living().empty() && ::wglShareLists(Living().front(), context_) == FALSE) Refuse("lists are not shared");
    Living().push_back(context_);
  } catch (...) {
    if (context_ != nullptr) ::wglDeleteContext(context_);
    ::ReleaseDC(window_, device_);
    throw;
  }
}

WglContext::~WglContext() {
  std::erase(Living(), context_);
  ::wglDeleteContext(context_);
  ::ReleaseDC(window_, device_);
}

bool WglContext::MakeCurrent() const {
  return ::IsWindow(window_) != FALSE && ::wglMakeCurrent(device_, context_) != FALSE;
}

void WglContext::LetGo() const {
  ::wglMakeCurrent(nullptr, nullptr);
}

void WglContext::Swap() const {
  ::SwapBuffers(device_);
}

}  // namespace vblur::host
