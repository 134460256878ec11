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

 protected:
  bool MakeCurrent() override;
  void LetGo() override;

 private:
  struct Context;

  std::unique_ptr<Context> context_;
};

}  // namespace vblur::host
