// The viewer's window on Windows.
#include "host/viewer/Viewer.h"

#include <gtest/gtest.h>
// After those of the project, whose names its macros would replace.
#include <windows.h>

namespace vblur::host {
namespace {

struct NoSurface : IVWSurface {
  HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE&) override { return kFailed; }
  HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override { return kFailed; }
};

TEST(Viewer, HasAWindowThatIsHiddenAtFirst) {
  HWND window = nullptr;
  {
    const auto viewer = Viewer::Make();
    window = viewer->Window();
    ASSERT_TRUE(::IsWindow(window));
    EXPECT_FALSE(::IsWindowVisible(window));
    EXPECT_NE(Viewer::Make()->Window(), window);
  }
  EXPECT_FALSE(::IsWindow(window)) << "it goes with the viewer";
}

TEST(Viewer, IsInvalidWithItsWindow) {
  const auto viewer = Viewer::Make();
  NoSurface surface;
  ::ShowWindow(viewer->Window(), SW_SHOWNOACTIVATE);
  viewer->Render(surface);
  EXPECT_FALSE(viewer->IsInvalid());
  EXPECT_TRUE(vblur::InvalidateRect(viewer->Window(), nullptr, false));
  EXPECT_TRUE(viewer->IsInvalid());
  viewer->Render(surface);
  EXPECT_FALSE(viewer->IsInvalid());
}

TEST(Viewer, IsNotInvalidWithAWindowThatIsHidden) {
  const auto viewer = Viewer::Make();
  NoSurface surface;
  viewer->Render(surface);
  EXPECT_TRUE(vblur::InvalidateRect(viewer->Window(), nullptr, false));
  EXPECT_FALSE(viewer->IsInvalid()) << "nothing of it shows";
}

}  // namespace
}  // namespace vblur::host
