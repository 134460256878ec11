#include "host/viewer/PaintViewer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "host/base/Failure.h"
#include "host/files/Sample.h"

namespace vblur::host {

namespace {

using Shown = std::array<std::byte, 4>;

// 0.6 of full scale.
constexpr Shown kOutside{std::byte{153}, std::byte{153}, std::byte{153}, std::byte{255}};
// 1.0 of a 16-bit picture.
constexpr std::int32_t kFull16 = 16384;

Shown Show8(const std::byte* pixel) {
  return {pixel[0], pixel[1], pixel[2], std::byte{255}};
}

Shown Show16(const std::byte* pixel) {
  std::array<std::int16_t, 3> stored{};
  std::memcpy(stored.data(), pixel, sizeof stored);
  Shown shown{};
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const std::int32_t limited = std::clamp<std::int32_t>(stored[i], 0, kFull16);
    shown[i] = static_cast<std::byte>((limited * 255 + kFull16 / 2) / kFull16);
  }
  shown[3] = std::byte{255};
  return shown;
}

Shown Show32(const std::byte* pixel) {
  std::array<float, 3> stored{};
  std::memcpy(stored.data(), pixel, sizeof stored);
  Shown shown{};
  for (std::size_t i = 0; i < stored.size(); ++i)
    shown[i] = static_cast<std::byte>(ToSample<std::uint8_t>(stored[i]));
  shown[3] = std::byte{255};
  return shown;
}

Shown Show(const std::byte* pixel, std::int32_t depth) {
  return depth == 8 ? Show8(pixel) : depth == 16 ? Show16(pixel) : Show32(pixel);
}

// For each surface pixel of a row or column the index of the nearest of `count` picture pixels; -1 for none. `start`
// and `step` are in picture pixels.
std::vector<std::int32_t> NearestPixels(std::int32_t surfaceCount, double start, double step, std::int32_t count) {
  std::vector<std::int32_t> nearest(static_cast<std::size_t>(surfaceCount), -1);
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    const double at = std::floor(start + (static_cast<double>(i) + 0.5) * step);
    if (at >= 0.0 && at < count) nearest[i] = static_cast<std::int32_t>(at);
  }
  return nearest;
}

// The surface as tools see it.
class ToolSurface : public IVWSurface {
 public:
  ToolSurface(ViewerSurface& surface, const ViewGeometry& geometry) : surface_(surface), geometry_(geometry) {}

  HRESULT BeginRenderOpenGL(tagVWOPENGLSURFACE& info) override {
    if (!surface_.Begin()) return kFailed;
    const WorldRectangle visible = geometry_.Visible();
    info = {surface_.Width(), surface_.Height(), visible.x, visible.y, visible.width, visible.height};
    return kOk;
  }
  HRESULT EndRenderOpenGL(const tagVWOPENGLSURFACE&) override {
    surface_.End();
    return kOk;
  }

 private:
  ViewerSurface& surface_;
  const ViewGeometry& geometry_;
};

void BeginOn(ViewerSurface& surface) {
  if (!surface.Begin()) throw Failure(ExitCode::SomeFramesFailed, "the viewer's surface cannot be painted on");
}

}  // namespace

std::vector<std::byte> ComposeFrame(const HostImage& frame, const ViewGeometry& geometry) {
  const WorldRectangle visible = geometry.Visible();
  const DSWorldPair position = frame.WorldPosition();
  const DSWorldPair size = frame.WorldSize();
  const std::int32_t width = geometry.SurfaceWidth();
  const std::int32_t height = geometry.SurfaceHeight();
  // Picture pixels per world unit.
  const double perUnitX = frame.Width() / size.x;
  const double perUnitY = frame.Height() / size.y;
  const auto columns =
      NearestPixels(width, (visible.x - position.x) * perUnitX, visible.width / width * perUnitX, frame.Width());
  const auto rows =
      NearestPixels(height, (visible.y - position.y) * perUnitY, visible.height / height * perUnitY, frame.Height());
  std::vector<std::byte> composed(columns.size() * rows.size() * sizeof(Shown));
  std::byte* to = composed.data();
  for (const std::int32_t row : rows) {
    for (const std::int32_t column : columns) {
      Shown shown = kOutside;
      if (row >= 0 && column >= 0) {
        const std::byte* pixel = frame.Row(row) + static_cast<std::size_t>(column) * frame.PixelBytes();
        shown = Show(pixel, frame.Depth());
      }
      to = std::ranges::copy(shown, to).out;
    }
  }
  return composed;
}

void PaintViewer(Viewer& viewer, const HostImage& frame, const ViewGeometry& geometry, ViewerSurface& surface) {
  const auto composed = ComposeFrame(frame, geometry);
  BeginOn(surface);
  surface.PaintPicture(composed);
  surface.End();
  ToolSurface tools(surface, geometry);
  viewer.Render(tools);
}

void ReadBack(ViewerSurface& surface, HostImage& into) {
  into.Reset(8, 4, surface.Width(), surface.Height());
  BeginOn(surface);
  surface.ReadBack({into.Row(0), into.ByteCount()});
  surface.End();
}

}  // namespace vblur::host
