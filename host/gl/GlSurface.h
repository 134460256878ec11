// OpenGL painting common to all surfaces; derived classes provide the context.
#pragma once

#include "host/viewer/ViewerSurface.h"

namespace vblur::host {

class GlSurface : public ViewerSurface {
 public:
  bool Begin() override;
  void End() override;
  void PaintPicture(std::span<const std::byte> pixels) override;
  void ReadBack(std::span<std::byte> pixels) override;

 protected:
  // Makes the context current with the surface as its target.
  virtual bool MakeCurrent() = 0;
  virtual void LetGo() = 0;
};

}  // namespace vblur::host
