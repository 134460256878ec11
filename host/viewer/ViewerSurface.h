// What a viewer is painted on: a window of a program, or memory. Belongs to the user-interface thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vblur::host {

class ViewerSurface {
 public:
  virtual ~ViewerSurface() = default;

  // In pixels.
  virtual std::int32_t width() const = 0;
  virtual std::int32_t height() const = 0;

  // Makes the surface's OpenGL context current, in a compatibility profile, with the whole surface as viewport and the
  // model view matrix selected. That one is the identity; the projection moves everything by less than a 50th of a
  // pixel, inwards at the edges, so that vertices do not fall on pixel centres. False leaves no context current.
  virtual bool Begin() = 0;
  virtual void End() = 0;
  // Between the two. Covers the surface: rows from the bottom up, four components of 8 bits a pixel.
  virtual void PaintPicture(std::span<const std::byte> pixels) = 0;
  // Between the two. What was painted, opaque, laid out likewise.
  virtual void ReadBack(std::span<std::byte> pixels) = 0;
};

}  // namespace vblur::host
