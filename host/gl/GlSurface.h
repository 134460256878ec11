// OpenGL painting common to all surfaces, on a frame buffer in memory; derived classes provide the context.
#pragma once

#include <optional>

#include "host/gl/FrameBuffer.h"
#include "host/viewer/ViewerSurface.h"

namespace vblur::host {

class GlSurface : public ViewerSurface {
 public:
  std::int32_t Width() const override { return frameBuffer_->Width(); }
  std::int32_t Height() const override { return frameBuffer_->Height(); }
  void Resize(std::int32_t width, std::int32_t height) override;
  bool Begin() override;
  void End() override;
  void PaintPicture(std::span<const std::byte> pixels) override;
  void ReadBack(std::span<std::byte> pixels) override;

 protected:
  // Called once, by a derived class that has its context. False if that has no frame buffers. Throws Failure: wrong
  // usage for a size above the renderer's maximum.
  bool MakeFrameBuffer(FrameBuffer::Find find, std::int32_t width, std::int32_t height);
  // Before the context ends, if it shares objects with others.
  void DeleteFrameBuffer();
  // Onto the window of the context, which is current.
  void CopyToWindow() const { frameBuffer_->CopyToWindow(); }

  // Makes the context current.
  virtual bool MakeCurrent() = 0;
  virtual void LetGo() = 0;

 private:
  class Current;

  std::optional<FrameBuffer> frameBuffer_;
};

}  // namespace vblur::host
