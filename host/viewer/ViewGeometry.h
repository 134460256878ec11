// Coordinates of a viewer: world, frame and surface, each with a point type of its own, all with y upwards.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "host/hosted/HostImage.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// The viewer's units; pen events use them.
struct WorldPoint {
  double x = 0.0;
  double y = 0.0;
};

// Pixels of the project's frame at full resolution, from its lower left corner; pixel i covers [i, i + 1). The unit of
// the effect's controls.
struct FramePoint {
  double x = 0.0;
  double y = 0.0;
};

// Pixels of the surface, from its lower left corner.
struct SurfacePoint {
  double x = 0.0;
  double y = 0.0;
};

struct WorldRectangle {
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;
};

// The frame of a project. Its pixels are square in world units.
struct ProjectFrame {
  double width = 1.0;  // pixels
  double height = 1.0;
  double worldPerPixel = 1.0;
};

// The project's frame. Without usable project sizes: the picture's size, one world unit per pixel.
ProjectFrame FrameOf(const std::optional<ProjectSizes>& project, const HostImage& picture);

// The part of the world that a surface shows.
class ViewGeometry {
 public:
  static constexpr double kLeastZoom = 1.0 / 64;
  static constexpr double kMostZoom = 64.0;

  // Zoom 1, centred on the frame. Width and height of the surface are at least 1.
  ViewGeometry(const ProjectFrame& frame, std::int32_t surfaceWidth, std::int32_t surfaceHeight);

  // At least 1 x 1 pixels. Zoom and pan stay.
  void Resize(std::int32_t surfaceWidth, std::int32_t surfaceHeight);
  // Surface pixels per frame pixel, clamped to the limits.
  void SetZoom(double zoom);
  // Offset of the surface's centre from the frame's, in frame pixels.
  void SetPan(double x, double y);

  const ProjectFrame& Frame() const { return frame_; }
  std::int32_t SurfaceWidth() const { return surfaceWidth_; }
  std::int32_t SurfaceHeight() const { return surfaceHeight_; }
  // For tests.
  double Zoom() const { return zoom_; }
  WorldRectangle Visible() const;

  WorldPoint ToWorld(FramePoint point) const;
  FramePoint ToFrame(SurfacePoint point) const;

 private:
  double WorldPerSurfacePixel() const { return frame_.worldPerPixel / zoom_; }

  ProjectFrame frame_;
  std::int32_t surfaceWidth_;
  std::int32_t surfaceHeight_;
  double zoom_ = 1.0;
  FramePoint middle_;
};

}  // namespace vblur::host
