// A picture in memory that OpenGL paints on, in place of a window's.
#pragma once

#include <cstdint>

#include "host/gl/Gl.h"

namespace vblur::host {

class FrameBuffer {
 public:
  // Finds a function of OpenGL by its name; null for none. What it finds is that of the context that is current.
  using Find = void* (*)(const char* name);

  // With the context current, as everything here. IsUsable tells whether it has frame buffers.
  explicit FrameBuffer(Find find);
  bool IsUsable() const;

  // At least 1 x 1 pixels, 8-bit RGBA; what was painted is lost. False if the context cannot have it. Throws Failure:
  // wrong usage for a size above the renderer's maximum.
  bool Resize(std::int32_t width, std::int32_t height);
  // What it holds of the context; a context that shares nothing takes it along.
  void Delete() const;
  // Painting and reading go to it from now on.
  void Bind() const;
  // Its picture on the window of the context, pixel by pixel.
  void CopyToWindow() const;

  std::int32_t Width() const { return width_; }
  std::int32_t Height() const { return height_; }

 private:
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  GLuint frameBuffer_ = 0;
  GLuint colours_ = 0;

  PFNGLGENRENDERBUFFERSPROC genRenderbuffers_;
  PFNGLBINDRENDERBUFFERPROC bindRenderbuffer_;
  PFNGLRENDERBUFFERSTORAGEPROC renderbufferStorage_;
  PFNGLGENFRAMEBUFFERSPROC genFramebuffers_;
  PFNGLBINDFRAMEBUFFERPROC bindFramebuffer_;
  PFNGLFRAMEBUFFERRENDERBUFFERPROC framebufferRenderbuffer_;
  PFNGLCHECKFRAMEBUFFERSTATUSPROC checkFramebufferStatus_;
  PFNGLBLITFRAMEBUFFERPROC blitFramebuffer_;
  PFNGLDELETERENDERBUFFERSPROC deleteRenderbuffers_;
  PFNGLDELETEFRAMEBUFFERSPROC deleteFramebuffers_;
};

}  // namespace vblur::host
