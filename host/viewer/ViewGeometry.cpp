#include "host/viewer/ViewGeometry.h"

#include <algorithm>

namespace vblur::host {

ProjectFrame FrameOf(const std::optional<ProjectSizes>& project, const HostImage& picture) {
  if (project && project->user[1] > 0.0 && project->world[0] > 0.0 && project->world[1] > 0.0) {
    const double worldPerPixel = project->world[1] / project->user[1];
    return {project->world[0] / worldPerPixel, project->user[1], worldPerPixel};
  }
  return {static_cast<double>(picture.Width()), static_cast<double>(picture.Height()), 1.0};
}

ViewGeometry::ViewGeometry(const ProjectFrame& frame, std::int32_t surfaceWidth, std::int32_t surfaceHeight)
    : frame_(frame), surfaceWidth_(surfaceWidth), surfaceHeight_(surfaceHeight) {
  SetPan(0.0, 0.0);
}

void ViewGeometry::Resize(std::int32_t surfaceWidth, std::int32_t surfaceHeight) {
  surfaceWidth_ = surfaceWidth;
  surfaceHeight_ = surfaceHeight;
}

void ViewGeometry::SetZoom(double zoom) {
  zoom_ = std::clamp(zoom, kLeastZoom, kMostZoom);
}

void ViewGeometry::SetPan(double x, double y) {
  middle_ = {frame_.width * 0.5 + x, frame_.height * 0.5 + y};
}

WorldRectangle ViewGeometry::Visible() const {
  const WorldPoint corner = ToWorld(ToFrame({0.0, 0.0}));
  return {corner.x, corner.y, surfaceWidth_ * WorldPerSurfacePixel(), surfaceHeight_ * WorldPerSurfacePixel()};
}

WorldPoint ViewGeometry::ToWorld(FramePoint point) const {
  return {point.x * frame_.worldPerPixel, point.y * frame_.worldPerPixel};
}

FramePoint ViewGeometry::ToFrame(SurfacePoint point) const {
  return {middle_.x + (point.x - surfaceWidth_ * 0.5) / zoom_, middle_.y + (point.y - surfaceHeight_ * 0.5) / zoom_};
}

}  // namespace vblur::host
