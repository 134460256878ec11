// An off-screen surface through EGL; needs no window system.
#pragma once

#include <memory>

#include "host/gl/GlSurface.h"

namespace vblur::host {

class EglSurface : public GlSurface {
 public:
  // Throws Failure: some frames failed, naming the step, if the machine has no off-screen OpenGL; wrong usage for a
  // size above the renderer's maximum.
  EglSurface(std::int32_t width, std::int32_t height);
  ~EglSurface() override;

  std::int32_t Width() const override { return width_; }
  std::int32_t Height() const override { return height_; }

 protected:
  bool MakeCurrent() override;
  void LetGo() override;

 private:
  struct Context;

  void MakeFrameBuffer();

  std::int32_t width_;
  std::int32_t height_;
  std::unique_ptr<Context> context_;
  unsigned frameBuffer_ = 0;
  unsigned colours_ = 0;
};

}  // namespace vblur::host
