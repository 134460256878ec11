// The rows of a picture that the light library writes, in a format without windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/files/ComponentRows.h"
#include "host/files/OutputPixels.h"

namespace vblur::host {

// Whether a picture has metadata of the light library or none, and no windows of its own, which an output would cut to.
bool IsOfLightRows(const PictureToWrite& picture);

class LightRows {
 public:
  // `picture` is borrowed, and one of these.
  explicit LightRows(const PictureToWrite& picture);

  PixelLayout Layout() const { return pixels_.layout; }
  SampleType Type() const { return pixels_.type; }
  std::int32_t Width() const { return window_.width; }
  std::int32_t Height() const { return window_.height; }
  std::size_t PixelBytes() const { return components_.size() * SampleBytes(pixels_.type); }
  std::size_t RowBytes() const { return rows_.RowBytes(); }

  // A row, 0 the top one: the layout's channels of a pixel side by side, in the machine's order of bytes. Each row
  // once, of one thread at a time.
  void Make(std::int32_t row, std::byte* samples) { Make(row, samples, beyond_); }
  // On any thread; AddBeyond takes what the type does not hold.
  void Make(std::int32_t row, std::byte* samples, BeyondRange& beyond) const;
  void AddBeyond(const BeyondRange& beyond) { beyond_.Add(beyond); }
  // As PictureLibrary::Write returns them, once, after the rows. `held`: what the file can hold, for values beyond it;
  // empty: what the type can.
  std::vector<std::string> Notes(const std::string& held = {});

 private:
  const PictureToWrite& picture_;
  OutputPixels pixels_;
  std::vector<int> components_;
  FileWindow window_;
  ComponentRows rows_;
  BeyondRange beyond_;
};

}  // namespace vblur::host
