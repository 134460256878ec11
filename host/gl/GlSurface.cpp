#include "host/gl/GlSurface.h"

#include <GL/gl.h>

namespace vblur::host {

bool GlSurface::Begin() {
  if (!MakeCurrent()) return false;
  glViewport(0, 0, width(), height());
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
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
  // With both matrices the identity: the lower left corner of the viewport.
  glRasterPos2f(-1.0F, -1.0F);
  glDrawPixels(width(), height(), GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  glPopClientAttrib();
}

void GlSurface::ReadBack(std::span<std::byte> pixels) {
  glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, width(), height(), GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  glPopClientAttrib();
  // What was painted half transparent stands on what lay below it.
  for (std::size_t alpha = 3; alpha < pixels.size(); alpha += 4)
    pixels[alpha] = std::byte{255};
}

}  // namespace vblur::host
