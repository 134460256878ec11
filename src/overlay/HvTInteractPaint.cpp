// Painting of the viewer tool.
#include <GL/gl.h>

#include "overlay/Drawing.h"
#include "overlay/HvTInteract.h"
#include "overlay/OverlayColours.h"
#include "overlay/ScopeExit.h"

namespace vblur {
namespace {

constexpr GLbitfield kAllAttributes = 0xFFFFF;
constexpr double kDepth = 100.0;
// Pick distance in surface pixels.
constexpr double kPickPixels = 4.0;

double AsFloat(double value) {
  return static_cast<double>(static_cast<float>(value));
}

}  // namespace

HRESULT HvTInteract::OnRender(IVWSurface* surface) {
  if (surface == nullptr) return kNullPointer;
  if ((displayFlags_ & kControlsShown) != 0) Paint(*surface);
  return CDSInteractiveTool::OnRender(surface);
}

void HvTInteract::Paint(IVWSurface& surface) {
  CatchUp();
  tagVWOPENGLSURFACE info;
  if (vwSurfaceBeginRenderOpenGL(&surface, &info) < 0) return;
  // A widget may throw.
  const ScopeExit end([&] { vwSurfaceEndRenderOpenGL(&surface, &info); });
  // Created in the first context and kept.
  if (fontBase_ == 0) fontBase_ = MakeOverlayFont(wglGetCurrentDC());
  SetOverlayFont(fontBase_);
  glPushAttrib(kAllAttributes);
  const ScopeExit pop([] { glPopAttrib(); });
  SetUpSurface(info);
  SetTolerance({static_cast<float>(info.worldWidth * kPickPixels / info.width),
                static_cast<float>(info.worldHeight * kPickPixels / info.height)});
  HvTManager::Draw();
}

// Uses the matrix mode that the surface left current; widgets compose in the same matrix.
void HvTInteract::SetUpSurface(const tagVWOPENGLSURFACE& info) {
  glShadeModel(GL_SMOOTH);
  glClearColor(kHvGrey.red, kHvGrey.green, kHvGrey.blue, 0.0f);
  glEnable(GL_LINE_STIPPLE);
  glViewport(0, 0, info.width - 1, info.height - 1);
  glLoadIdentity();
  glOrtho(-0.5, info.width - 0.5, -0.5, info.height - 0.5, -kDepth, kDepth);
  // Replaces the matrix above; hosts see both pairs of calls.
  glLoadIdentity();
  glOrtho(AsFloat(info.x), AsFloat(info.x + info.worldWidth), AsFloat(info.y), AsFloat(info.y + info.worldHeight),
          -kDepth, kDepth);
  glScalef(viewScale_, viewScale_, 1.0f);
}

}  // namespace vblur
