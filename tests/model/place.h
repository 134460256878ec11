// The places of images, and views of their fields.
#pragma once

#include "frame_job.h"

namespace model {

/// Size in user units and whole pixel origin; all zero for an absent image.
struct Place {
  float width = 0.0f;
  float height = 0.0f;
  int originX = 0;
  int originY = 0;
};

Place PlaceOf(const std::optional<FrameImage>& image, const std::optional<Project>& project);

/// The picture at an origin; for a field the field's rows only, at half the height and half the origin.
Picture View(const Picture& picture, int originX, int originY, int field);

/// Copies the rows of a view back to the picture.
void PutBack(const Picture& view, Picture& picture, int field);

}  // namespace model
