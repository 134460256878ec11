#include "host/gl/FrameBuffer.h"

#include <string>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

template <class Function>
Function Found(FrameBuffer::Find find, const char* name) {
  return reinterpret_cast<Function>(find(name));
}

}  // namespace

FrameBuffer::FrameBuffer(Find find)
    : genRenderbuffers_(Found<PFNGLGENRENDERBUFFERSPROC>(find, "glGenRenderbuffers")),
      bindRenderbuffer_(Found<PFNGLBINDRENDERBUFFERPROC>(find, "glBindRenderbuffer")),
      renderbufferStorage_(Found<PFNGLRENDERBUFFERSTORAGEPROC>(find, "glRenderbufferStorage")),
      genFramebuffers_(Found<PFNGLGENFRAMEBUFFERSPROC>(find, "glGenFramebuffers")),
      bindFramebuffer_(Found<PFNGLBINDFRAMEBUFFERPROC>(find, "glBindFramebuffer")),
      framebufferRenderbuffer_(Found<PFNGLFRAMEBUFFERRENDERBUFFERPROC>(find, "glFramebufferRenderbuffer")),
      checkFramebufferStatus_(Found<PFNGLCHECKFRAMEBUFFERSTATUSPROC>(find, "glCheckFramebufferStatus")),
      blitFramebuffer_(Found<PFNGLBLITFRAMEBUFFERPROC>(find, "glBlitFramebuffer")),
      deleteRenderbuffers_(Found<PFNGLDELETERENDERBUFFERSPROC>(find, "glDeleteRenderbuffers")),
      deleteFramebuffers_(Found<PFNGLDELETEFRAMEBUFFERSPROC>(find, "glDeleteFramebuffers")) {}

bool FrameBuffer::IsUsable() const {
  return genRenderbuffers_ != nullptr && bindRenderbuffer_ != nullptr && renderbufferStorage_ != nullptr &&
         genFramebuffers_ != nullptr && bindFramebuffer_ != nullptr && framebufferRenderbuffer_ != nullptr &&
         checkFramebufferStatus_ != nullptr && blitFramebuffer_ != nullptr && deleteRenderbuffers_ != nullptr &&
         deleteFramebuffers_ != nullptr;
}

bool FrameBuffer::Resize(std::int32_t width, std::int32_t height) {
  GLint most = 0;
  glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &most);
  if (width > most || height > most) {
    throw Failure(ExitCode::WrongUsage, "a view of " + std::to_string(width) + " x " + std::to_string(height) +
                                            " pixels: expected at most " + std::to_string(most) + " x " +
                                            std::to_string(most));
  }
  if (colours_ == 0) {
    genRenderbuffers_(1, &colours_);
    genFramebuffers_(1, &frameBuffer_);
  }
  bindRenderbuffer_(GL_RENDERBUFFER, colours_);
  renderbufferStorage_(GL_RENDERBUFFER, GL_RGBA8, width, height);
  bindFramebuffer_(GL_FRAMEBUFFER, frameBuffer_);
  framebufferRenderbuffer_(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colours_);
  if (checkFramebufferStatus_(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) return false;
  glDrawBuffer(GL_COLOR_ATTACHMENT0);
  glReadBuffer(GL_COLOR_ATTACHMENT0);
  width_ = width;
  height_ = height;
  return true;
}

void FrameBuffer::Delete() const {
  deleteFramebuffers_(1, &frameBuffer_);
  deleteRenderbuffers_(1, &colours_);
}

void FrameBuffer::Bind() const {
  bindFramebuffer_(GL_FRAMEBUFFER, frameBuffer_);
}

void FrameBuffer::CopyToWindow() const {
  bindFramebuffer_(GL_READ_FRAMEBUFFER, frameBuffer_);
  bindFramebuffer_(GL_DRAW_FRAMEBUFFER, 0);
  blitFramebuffer_(0, 0, width_, height_, 0, 0, width_, height_, GL_COLOR_BUFFER_BIT, GL_NEAREST);
  Bind();
}

}  // namespace vblur::host
