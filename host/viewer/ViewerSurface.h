// The target of a viewer's painting: a window or memory. Belongs to the user-interface thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vblur::host {

class ViewerSurface {
 public:
  virtual ~ViewerSurface() = default;

  // In pixels.
  virtual std::int32_t Width() const = 0;
  virtual std::int32_t Height() const = 0;

  // At least 1 x 1 pixels. What was painted is lost. Throws Failure: some frames failed if it cannot be, wrong usage
  // for a size above the renderer's maximum.
  virtual void Resize(std::int32_t width, std::int32_t height) = 0;

  // Makes the surface's OpenGL context current, in a compatibility profile, with the whole surface as viewport and the
  // model view matrix selected. That one is the identity; the projection moves everything by less than a 50th of a
  // pixel, inwards at the edges, so that vertices do not fall on pixel centres. False leaves no context current.
  virtual bool Begin() = 0;
  virtual void End() = 0;
  // Between Begin and End. Covers the surface; rows bottom-up, 8-bit RGBA.
  virtual void PaintPicture(std::span<const std::byte> pixels) = 0;
  // Between Begin and End. The painted picture, opaque, in the same layout.
  virtual void ReadBack(std::span<std::byte> pixels) = 0;
  // Outside of Begin and End. Shows the painted picture, if the surface is a window's.
  virtual void Present() {}
};

}  // namespace vblur::host
