// The axis control in rendered pictures: the positions of its handles at several zooms and pans.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <tuple>

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/hosted/EffectHost.h"
#include "host/viewer/OffScreenSurface.h"
#include "host/viewer/PaintViewer.h"
#include "overlay/HvTInteract.h"
#include "sdk/effects/Content.h"

namespace vblur::host {
namespace {

constexpr std::int32_t kFrameWidth = 240;
constexpr std::int32_t kFrameHeight = 180;
constexpr std::uint32_t kAllHandles = 127;

enum class Hue { Red, Green, Blue, None };

Hue HueAt(const HostImage& image, std::int32_t x, std::int32_t y) {
  const std::byte* pixel = image.Row(y) + static_cast<std::size_t>(x) * 4;
  std::array<int, 3> parts{};
  for (std::size_t i = 0; i < parts.size(); ++i)
    parts[i] = std::to_integer<int>(pixel[i]);
  constexpr int kSeen = 60;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (parts[i] > kSeen && parts[i] > 2 * std::max(parts[(i + 1) % 3], parts[(i + 2) % 3])) return static_cast<Hue>(i);
  }
  return Hue::None;
}

// A tool with one axis control at the centre of a black frame.
class AxisPicture : public testing::TestWithParam<std::tuple<double, double>> {
 protected:
  AxisPicture() {
    frame_.Reset(8, 4, kFrameWidth, kFrameHeight);
    frame_.Place({});
    for (std::int32_t y = 0; y < kFrameHeight; ++y)
      std::fill_n(frame_.Row(y), kFrameWidth * 4, std::byte{0});
    std::uintptr_t context = 0;
    viewer_->PushContext(kVWInteractiveContext, static_cast<IViewerLayer*>(tool_.get()), &context);
    tool_->AddObject(&axis_);
    axis_.SetCentre(120.0f, 90.0f);
  }
  ~AxisPicture() override {
    viewer_->Clear();
    axis_.Detach();
  }

  void Paint() {
    const auto [zoom, pan] = GetParam();
    geometry_.emplace(ProjectFrame{kFrameWidth, kFrameHeight, 1.0}, 480, 360);
    geometry_->SetZoom(zoom);
    geometry_->SetPan(pan, -pan);
    const auto surface = MakeOffScreenSurface(480, 360);
    PaintViewer(*viewer_, frame_, *geometry_, *surface);
    ReadBack(*surface, picture_);
  }

  // Whether a hue is within 1.5 pixels of a position relative to the control's centre.
  bool IsSeen(Hue hue, double dx, double dy) const {
    const WorldRectangle visible = geometry_->Visible();
    const double x = (120.0 + dx - visible.x) * geometry_->Zoom() * 479.0 / 480.0;
    const double y = (90.0 + dy - visible.y) * geometry_->Zoom() * 359.0 / 360.0;
    for (int row = static_cast<int>(std::floor(y - 1.5)); row <= y + 1.5; ++row) {
      for (int column = static_cast<int>(std::floor(x - 1.5)); column <= x + 1.5; ++column) {
        if (HueAt(picture_, column, row) == hue) return true;
      }
    }
    return false;
  }

  EffectHost host_{ProjectSizes{{kFrameWidth, kFrameHeight}, {kFrameWidth, kFrameHeight}}};
  OpenContent content_{host_};
  ComPtr<Viewer> viewer_ = Viewer::Make();
  ComPtr<HvTInteract> tool_ = ComPtr<HvTInteract>::Own(new HvTInteract());
  HvT2DAxis axis_{"axis", kAllHandles};
  HostImage frame_;
  HostImage picture_;
  std::optional<ViewGeometry> geometry_;
};

TEST_P(AxisPicture, HasItsHandlesWhereTheyAre) {
  Paint();
  for (const double sign : {-1.0, 1.0}) {
    EXPECT_TRUE(IsSeen(Hue::Red, sign * 15.0, 0.0)) << "shaft along x";
    EXPECT_TRUE(IsSeen(Hue::Red, 0.0, sign * 15.0)) << "shaft along y";
    EXPECT_TRUE(IsSeen(Hue::Blue, sign * 37.0, 12.0)) << "upright edge of the box";
    EXPECT_TRUE(IsSeen(Hue::Blue, 12.0, sign * 37.0)) << "lying edge of the box";
  }
  EXPECT_TRUE(IsSeen(Hue::Green, 32.0 * std::cos(0.4), 32.0 * std::sin(0.4))) << "arc";
  EXPECT_FALSE(IsSeen(Hue::Green, -32.0 * std::cos(0.4), 32.0 * std::sin(0.4))) << "the other side has no arc";
  const double dot = 37.0 + 10.0 / std::sqrt(2.0);
  EXPECT_TRUE(IsSeen(Hue::Blue, dot, dot)) << "dot of the aspect";
  EXPECT_FALSE(IsSeen(Hue::Blue, 50.0, 0.0)) << "nothing beside the box";
  EXPECT_FALSE(IsSeen(Hue::Red, 50.0, 0.0));
}

TEST_P(AxisPicture, RotatesAndScalesTheBoxAndKeepsTheArrows) {
  axis_.SetRotation(90.0f);
  axis_.SetScale(1.25f);
  axis_.SetAxisScale(1.0f, 0.5f);
  Paint();
  const double far = 37.0 * 1.25;
  const double near = far * 0.5;
  for (const double sign : {-1.0, 1.0}) {
    EXPECT_TRUE(IsSeen(Hue::Blue, sign * near, 0.5 * far)) << "the box stands upright";
    EXPECT_TRUE(IsSeen(Hue::Blue, 0.5 * near, sign * far));
    EXPECT_TRUE(IsSeen(Hue::Red, sign * 15.0, 0.0)) << "arrows do not turn";
  }
  EXPECT_TRUE(IsSeen(Hue::Green, -32.0 * std::sin(0.4), 32.0 * std::cos(0.4))) << "the arc has turned to the top";
}

TEST_P(AxisPicture, FollowsThePen) {
  Paint();
  const auto pen = [](double dx, double dy) { return tagVWPENEVENT{1, 120.0 + dx, 90.0 + dy}; };
  tool_->OnPenMove(pen(0.0, 0.0));
  EXPECT_EQ(axis_.Active(), 3u);
  tool_->OnPenDown(pen(0.0, 0.0));
  tool_->OnPenMove(pen(30.0, -20.0));
  tool_->OnPenUp(pen(30.0, -20.0));
  EXPECT_EQ(axis_.Centre(), (HvPoint{150.0f, 70.0f}));
  Paint();
  EXPECT_TRUE(IsSeen(Hue::Blue, 30.0 + 37.0, -20.0 + 12.0));
  EXPECT_FALSE(IsSeen(Hue::Blue, -37.0, 12.0)) << "it is no longer where it was";
}

TEST_P(AxisPicture, ShowsTheHandleUnderThePen) {
  axis_.SetRotation(20.0f);
  tool_->OnPenMove({0, 120.0 + 32.0 * std::cos(0.35), 90.0 + 32.0 * std::sin(0.35)});
  EXPECT_EQ(axis_.Active(), static_cast<std::uint32_t>(HvT2DAxis::kRotate));
  Paint();
  // At zoom 0.5 the arrow head is mostly outline.
  const bool isSmall = std::get<0>(GetParam()) < 1.0;
  EXPECT_TRUE(isSmall || IsSeen(Hue::Green, 17.6, 26.1)) << "the head at the arc's upper end";
  // The picture for the documentation: no page of the effect shows the control.
  const char* const file = std::getenv("VBLUR_AXIS_PICTURE");
  if (file != nullptr && GetParam() == std::tuple(3.0, 0.0)) PictureWriter().Write(file, picture_, nullptr, true);
}

INSTANTIATE_TEST_SUITE_P(Views, AxisPicture,
                         testing::Combine(testing::Values(0.5, 1.0, 3.0), testing::Values(0.0, 9.0)));

}  // namespace
}  // namespace vblur::host
