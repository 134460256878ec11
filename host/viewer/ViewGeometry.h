// Where things stand in a viewer. There are three systems of coordinates, all with y upwards, and each point says
// by its type whose it is.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "host/hosted/HostImage.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// The viewer's own units; tools get the pen in them.
struct WorldPoint {
  double x = 0.0;
  double y = 0.0;
};

// Pixels of the project's frame at full resolution, from its lower left corner; a whole number is a pixel's corner.
// What the controls of the effect are measured in.
struct FramePoint {
  double x = 0.0;
  double y = 0.0;
};

// Pixels of what is painted on, from its lower left corner.
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

// The frame of a project. Its pixels are square in the world.
struct ProjectFrame {
  double width = 1.0;  // in pixels, as the height
  double height = 1.0;
  double worldPerPixel = 1.0;
};

// The frame of these sizes; a frame as large as the picture, a unit a pixel, where a project has none that can be
// read or they are not above 0.
ProjectFrame FrameOf(const std::optional<ProjectSizes>& project, const HostImage& picture);

// Which part of the world a surface shows.
class ViewGeometry {
 public:
  static constexpr double kLeastZoom = 1.0 / 64;
  static constexpr double kMostZoom = 64.0;

  // At a zoom of 1, the frame's centre in the middle. Width and height of the surface are at least 1.
  ViewGeometry(const ProjectFrame& frame, std::int32_t surfaceWidth, std::int32_t surfaceHeight);

  // A zoom is how many pixels of the surface a pixel of the frame is wide; held within the limits.
  void SetZoom(double zoom);
  // How far the middle of the surface lies from the frame's centre, in pixels of the frame.
  void SetPan(double x, double y);

  const ProjectFrame& frame() const { return frame_; }
  std::int32_t surfaceWidth() const { return surfaceWidth_; }
  std::int32_t surfaceHeight() const { return surfaceHeight_; }
  double zoom() const { return zoom_; }
  WorldRectangle Visible() const;

  WorldPoint ToWorld(FramePoint point) const;
  WorldPoint ToWorld(SurfacePoint point) const;
  FramePoint ToFrame(WorldPoint point) const;
  SurfacePoint ToSurface(WorldPoint point) const;

 private:
  double worldPerSurfacePixel() const { return frame_.worldPerPixel / zoom_; }

  ProjectFrame frame_;
  std::int32_t surfaceWidth_;
  std::int32_t surfaceHeight_;
  double zoom_ = 1.0;
  FramePoint middle_;
};

}  // namespace vblur::host
