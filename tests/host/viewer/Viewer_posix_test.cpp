// The viewer's window where it is no more than a handle.
#include "host/viewer/Viewer.h"

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(Viewer, IsInvalidWithItsWindow) {
  struct NoSurface : IVWSurface {
    HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE&) override { return kFailed; }
    HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override { return kFailed; }
  } surface;
  const auto viewer = Viewer::Make();
  viewer->Render(surface);
  EXPECT_FALSE(viewer->IsInvalid());
  EXPECT_TRUE(InvalidateRect(viewer->Window(), nullptr, false));
  EXPECT_TRUE(viewer->IsInvalid());
  viewer->Render(surface);
  EXPECT_FALSE(viewer->IsInvalid());
}

}  // namespace
}  // namespace vblur::host
