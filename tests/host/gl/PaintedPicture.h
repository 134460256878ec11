// A viewer's picture on an off-screen surface.
#pragma once

#include <array>
#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "host/gl/Gl.h"
#include "host/viewer/OffScreenSurface.h"
#include "host/viewer/PaintViewer.h"
#include "platform/GlFont.h"
#include "tests/support/host/RecordingTool.h"

namespace vblur::host {

using Rgba = std::array<int, 4>;

inline Rgba PixelAt(const HostImage& image, std::int32_t x, std::int32_t y) {
  const std::byte* pixel = image.Row(y) + static_cast<std::size_t>(x) * 4;
  return {std::to_integer<int>(pixel[0]), std::to_integer<int>(pixel[1]), std::to_integer<int>(pixel[2]),
          std::to_integer<int>(pixel[3])};
}

// Red is x, green is y.
inline void FillByPlace(HostImage& image, std::int32_t width, std::int32_t height) {
  image.Reset(8, 4, width, height);
  image.Place({});
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      std::byte* pixel = image.Row(y) + static_cast<std::size_t>(x) * 4;
      pixel[0] = static_cast<std::byte>(x);
      pixel[1] = static_cast<std::byte>(y);
      pixel[2] = std::byte{7};
      pixel[3] = std::byte{9};
    }
  }
}

// A viewer of 40 x 30 pixels with one tool that draws in frame pixels, as the effect's does.
class PaintedPicture : public testing::Test {
 protected:
  PaintedPicture() {
    FillByPlace(frame, 40, 30);
    tool->onRender = [this](IVWSurface* painted) {
      EXPECT_EQ(wglGetCurrentDC(), nullptr);
      ASSERT_EQ(vwSurfaceBeginRenderOpenGL(painted, &info), kOk);
      EXPECT_NE(wglGetCurrentDC(), nullptr);
      glOrtho(info.x, info.x + info.worldWidth, info.y, info.y + info.worldHeight, -100, 100);
      if (draw) draw();
      EXPECT_EQ(glGetError(), 0u);
      EXPECT_EQ(vwSurfaceEndRenderOpenGL(painted, &info), kOk);
      EXPECT_EQ(wglGetCurrentDC(), nullptr);
    };
    std::uintptr_t context = 0;
    viewer->PushContext(kVWInteractiveContext, static_cast<IViewerLayer*>(tool.get()), &context);
  }
  ~PaintedPicture() override { viewer->Clear(); }

  void Paint() {
    PaintViewer(*viewer, frame, geometry, *surface);
    ReadBack(*surface, picture);
  }

  HostImage frame;
  HostImage picture;
  ViewGeometry geometry{{40.0, 30.0, 1.0}, 40, 30};
  std::unique_ptr<ViewerSurface> surface = MakeOffScreenSurface(40, 30);
  ComPtr<Viewer> viewer = Viewer::Make();
  ComPtr<RecordingTool> tool = MakeTool();
  tagVWOPENGLSURFACE info;
  std::function<void()> draw;
};

}  // namespace vblur::host
