#include "host/gl/GlSurface.h"

#include <GL/gl.h>

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

bool GlSurface::Begin() {
  if (!MakeCurrent()) return false;
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
