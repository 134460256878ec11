#include "host/gl/GlSurface.h"

#include <string>

#include "host/base/Failure.h"
#include "host/gl/Gl.h"

namespace vblur::host {

namespace {

// In pixels, right and up, at the middle of the surface. The software renderer leaves a hole where two segments of a
// line meet on a pixel's centre, as those of a centred ring do on a surface of an even size. Of 301 rings at 640 x 360
// all have gaps without the shift, none with it.
constexpr float kShift = 1.0F / 128.0F;
// Kept free at the right and upper edge, in clip coordinates: more than what rounding adds.
constexpr float kMargin = 1e-6F;

// The projection along an axis of `count` pixels. It also scales: with a shift only, lines along the right or upper
// edge would be clipped.
struct ShiftedAxis {
  explicit ShiftedAxis(std::int32_t count)
      : shift(2.0F * kShift / static_cast<float>(count)), scale(1.0F - shift - kMargin) {}

  float shift;
  float scale;
};

}  // namespace

// Keeps the context current, if it can be.
class GlSurface::Current {
 public:
  explicit Current(GlSurface& surface) : surface_(surface), isCurrent_(surface.MakeCurrent()) {}
  ~Current() {
    if (isCurrent_) surface_.LetGo();
  }
  Current(const Current&) = delete;
  Current& operator=(const Current&) = delete;

  explicit operator bool() const { return isCurrent_; }

 private:
  GlSurface& surface_;
  bool isCurrent_;
};

bool GlSurface::MakeFrameBuffer(FrameBuffer::Find find, std::int32_t width, std::int32_t height) {
  const Current current(*this);
  if (!current) return false;
  frameBuffer_.emplace(find);
  return frameBuffer_->IsUsable() && frameBuffer_->Resize(width, height);
}

void GlSurface::DeleteFrameBuffer() {
  if (const Current current(*this); current) frameBuffer_->Delete();
}

void GlSurface::Resize(std::int32_t width, std::int32_t height) {
  const Current current(*this);
  if (current && frameBuffer_->Resize(width, height)) return;
  throw Failure(ExitCode::SomeFramesFailed, "the viewer's surface cannot have " + std::to_string(width) + " x " +
                                                std::to_string(height) + " pixels");
}

bool GlSurface::Begin() {
  if (!MakeCurrent()) return false;
  frameBuffer_->Bind();
  glViewport(0, 0, Width(), Height());
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  const ShiftedAxis across(Width());
  const ShiftedAxis up(Height());
  glTranslatef(across.shift, up.shift, 0.0F);
  glScalef(across.scale, up.scale, 1.0F);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  return true;
}

void GlSurface::End() {
  glFlush();
  LetGo();
}

void GlSurface::PaintPicture(std::span<const std::byte> pixels) {
  glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  // The lower left corner of the viewport.
  glRasterPos2f(-1.0F, -1.0F);
  glDrawPixels(Width(), Height(), GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  glPopClientAttrib();
}

void GlSurface::ReadBack(std::span<std::byte> pixels) {
  glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, Width(), Height(), GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  glPopClientAttrib();
  // Blending also wrote alpha: the picture is opaque.
  for (std::size_t alpha = 3; alpha < pixels.size(); alpha += 4)
    pixels[alpha] = std::byte{255};
}

}  // namespace vblur::host
