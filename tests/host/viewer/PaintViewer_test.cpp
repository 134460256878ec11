#include "host/viewer/PaintViewer.h"

#include <gtest/gtest.h>

#include "tests/support/host/Pictures.h"

namespace vblur::host {
namespace {

TEST(PaintViewer, ShowsFloatsAsTheNearestStep) {
  HostImage picture;
  picture.Reset(32, 4, 2, 1);
  SetFloats(picture, {0.5f, 900.0f, -3.0f, 0.0f, 1.0f, 0.2f, 0.0f, 1.0f});
  const ViewGeometry geometry(FrameOf(ProjectSizes{{2.0, 1.0}, {2.0, 1.0}}, picture), 2, 1);
  std::vector<int> shown;
  for (const std::byte each : ComposeFrame(picture, geometry))
    shown.push_back(std::to_integer<int>(each));
  EXPECT_EQ(shown, (std::vector<int>{128, 255, 0, 255, 255, 51, 0, 255}));
}

}  // namespace
}  // namespace vblur::host
