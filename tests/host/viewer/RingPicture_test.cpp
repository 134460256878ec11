// The ring in rendered pictures: closed, whatever its size and the zoom.
#include <cstddef>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "host/hosted/EffectHost.h"
#include "host/viewer/OffScreenSurface.h"
#include "host/viewer/PaintViewer.h"
#include "overlay/HvTCircle.h"
#include "overlay/HvTInteract.h"
#include "sdk/effects/Content.h"

namespace vblur::host {
namespace {

constexpr std::int32_t kWidth = 640;
constexpr std::int32_t kHeight = 360;

// Red: 0 in the frame, 153 outside, 179 or 255 for the ring.
bool IsRing(const HostImage& image, std::int32_t x, std::int32_t y) {
  return std::to_integer<int>(image.Row(y)[static_cast<std::size_t>(x) * 4]) > 160;
}

// Whether a 4-connected fill from the centre passes the ring and reaches the edge of the picture.
bool Leaks(const HostImage& image) {
  std::vector<bool> filled(static_cast<std::size_t>(kWidth) * kHeight);
  std::vector<std::pair<std::int32_t, std::int32_t>> open{{kWidth / 2, kHeight / 2}};
  while (!open.empty()) {
    const auto [x, y] = open.back();
    open.pop_back();
    if (x < 0 || y < 0 || x >= kWidth || y >= kHeight) return true;
    auto done = filled[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)];
    if (done || IsRing(image, x, y)) continue;
    done = true;
    open.insert(open.end(), {{x - 1, y}, {x + 1, y}, {x, y - 1}, {x, y + 1}});
  }
  return false;
}

// A tool with a ring at the centre of a black frame, on a surface of even size.
class RingPicture : public testing::TestWithParam<double> {
 protected:
  RingPicture() {
    frame_.Reset(8, 4, kWidth, kHeight);
    frame_.Place({});
    frame_.Clear();
    std::uintptr_t context = 0;
    viewer_->PushContext(kVWInteractiveContext, static_cast<IViewerLayer*>(tool_.get()), &context);
    ring_.SetParent(&tool_->FrameCentre());
    geometry_.SetZoom(GetParam());
  }
  ~RingPicture() override {
    viewer_->Clear();
    ring_.Detach();
  }

  // The number of rings with gaps, for radii of 10 to 160 surface pixels.
  int CountOpenRings() {
    int open = 0;
    for (float radius = 10.0f; radius <= 160.0f; radius += 1.5f) {
      ring_.SetRadius(radius / static_cast<float>(GetParam()));
      PaintViewer(*viewer_, frame_, geometry_, *surface_);
      ReadBack(*surface_, picture_);
      if (Leaks(picture_)) ++open;
    }
    return open;
  }

  EffectHost host_{ProjectSizes{{kWidth, kHeight}, {kWidth, kHeight}}};
  OpenContent content_{host_};
  ComPtr<Viewer> viewer_ = Viewer::Make();
  ComPtr<HvTInteract> tool_ = ComPtr<HvTInteract>::Own(new HvTInteract());
  HvTCircle ring_{"ring", 50.0f};
  ViewGeometry geometry_{ProjectFrame{kWidth, kHeight, 1.0}, kWidth, kHeight};
  std::unique_ptr<ViewerSurface> surface_ = MakeOffScreenSurface(kWidth, kHeight);
  HostImage frame_;
  HostImage picture_;
};

TEST_P(RingPicture, IsClosed) {
  EXPECT_EQ(CountOpenRings(), 0);
}

TEST_P(RingPicture, IsClosedWhileItIsHovered) {
  ring_.Enter({});
  EXPECT_EQ(CountOpenRings(), 0);
}

INSTANTIATE_TEST_SUITE_P(Zooms, RingPicture, testing::Values(0.5, 1.0, 2.0));

}  // namespace
}  // namespace vblur::host
