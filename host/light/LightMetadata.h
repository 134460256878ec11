// What a plain PNG file holds beside its pixels.
#pragma once

#include <utility>

#include "host/files/PictureReport.h"
#include "host/light/PictureMetadata.h"

namespace vblur::host {

class LightMetadata final : public PictureMetadata {
 public:
  LightMetadata(PictureInfo described, PngMetadata png) : png_(std::move(png)) { info = std::move(described); }

  const PngMetadata* Png() const override { return &png_; }

 private:
  PngMetadata png_;
};

// Of metadata of a plain PNG file.
PictureReport DescribePicture(const PictureMetadata& metadata);

}  // namespace vblur::host
