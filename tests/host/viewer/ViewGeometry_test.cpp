#include "host/viewer/ViewGeometry.h"

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

// 720 x 486 pixels of 10/9 world units.
const ProjectSizes kProject{{720.0, 486.0}, {800.0, 540.0}};

// A point of the frame is shown at a point of the surface.
void ExpectShown(const ViewGeometry& view, FramePoint inFrame, SurfacePoint onSurface) {
  EXPECT_DOUBLE_EQ(view.ToFrame(onSurface).x, inFrame.x);
  EXPECT_DOUBLE_EQ(view.ToFrame(onSurface).y, inFrame.y);
}

void ExpectVisible(const ViewGeometry& view, double x, double y, double width, double height) {
  const WorldRectangle visible = view.Visible();
  EXPECT_DOUBLE_EQ(visible.x, x);
  EXPECT_DOUBLE_EQ(visible.y, y);
  EXPECT_DOUBLE_EQ(visible.width, width);
  EXPECT_DOUBLE_EQ(visible.height, height);
}

TEST(ViewGeometry, TakesTheFrameFromTheProject) {
  HostImage picture;
  picture.Reset(8, 4, 64, 32);
  const ProjectFrame frame = FrameOf(kProject, picture);
  EXPECT_DOUBLE_EQ(frame.width, 720.0);
  EXPECT_DOUBLE_EQ(frame.height, 486.0);
  EXPECT_DOUBLE_EQ(frame.worldPerPixel, 540.0 / 486.0);
  const auto isPicture = [](const ProjectFrame& other) {
    return other.width == 64.0 && other.height == 32.0 && other.worldPerPixel == 1.0;
  };
  EXPECT_TRUE(isPicture(FrameOf(std::nullopt, picture)));
  EXPECT_TRUE(isPicture(FrameOf(ProjectSizes{{64, 0}, {64, 32}}, picture)));
  EXPECT_TRUE(isPicture(FrameOf(ProjectSizes{{64, 32}, {0, 32}}, picture)));
}

TEST(ViewGeometry, ShowsTheFrameAsItIsAtFirst) {
  const ViewGeometry view({720.0, 486.0, 0.5}, 720, 486);
  ExpectVisible(view, 0.0, 0.0, 360.0, 243.0);
  ExpectShown(view, {0.0, 0.0}, {0.0, 0.0});
  ExpectShown(view, {720.0, 486.0}, {720.0, 486.0});
  EXPECT_EQ(view.ToWorld(FramePoint{10.0, 20.0}).x, 5.0);
  EXPECT_EQ(view.ToWorld(FramePoint{10.0, 20.0}).y, 10.0);
}

TEST(ViewGeometry, ZoomsAboutTheFramesCentre) {
  ViewGeometry view({640.0, 360.0, 1.0}, 640, 360);
  for (const double zoom : {0.5, 1.0, 3.0}) {
    view.SetZoom(zoom);
    ExpectShown(view, {320.0, 180.0}, {320.0, 180.0});
    ExpectShown(view, {330.0, 175.0}, {320.0 + 10.0 * zoom, 180.0 - 5.0 * zoom});
  }
  ExpectVisible(view, 320.0 - 320.0 / 3.0, 180.0 - 60.0, 640.0 / 3.0, 120.0);
  view.SetZoom(0.5);
  ExpectVisible(view, -320.0, -180.0, 1280.0, 720.0);
}

TEST(ViewGeometry, PansInPixelsOfTheFrame) {
  ViewGeometry view({640.0, 360.0, 2.0}, 320, 180);
  view.SetZoom(0.5);
  view.SetPan(40.0, -30.0);
  ExpectShown(view, {360.0, 150.0}, {160.0, 90.0});
  ExpectVisible(view, 80.0, -60.0, 1280.0, 720.0);
  const WorldPoint corner = view.ToWorld(view.ToFrame({320.0, 180.0}));
  EXPECT_DOUBLE_EQ(corner.x, 80.0 + 1280.0);
  EXPECT_DOUBLE_EQ(corner.y, -60.0 + 720.0);
}

TEST(ViewGeometry, LimitsItsZoom) {
  ViewGeometry view({640.0, 360.0, 1.0}, 640, 360);
  view.SetZoom(1000.0);
  EXPECT_EQ(view.Zoom(), 64.0);
  view.SetZoom(0.0);
  EXPECT_EQ(view.Zoom(), 1.0 / 64);
}

}  // namespace
}  // namespace vblur::host
