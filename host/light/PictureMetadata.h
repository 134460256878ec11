// Metadata of a picture file as it is passed on to outputs.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "host/files/PictureInfo.h"

namespace vblur::host {

// Metadata of a plain PNG file, by the names and in the order of the full picture library.
struct PngMetadata {
  // As its chunk (pHYs) has them; 0: none.
  std::uint32_t pixelsX = 0;
  std::uint32_t pixelsY = 0;
  bool isInMetres = false;
  std::string profile;  // of its colours; empty: none
  // Names and values in UTF-8, the time of the file (tIME) among them as DateTime.
  std::vector<std::pair<std::string, std::string>> texts;

  // Pixels in an inch, or where it has no unit as they are stored.
  float ResolutionX() const { return Resolution(pixelsX); }
  float ResolutionY() const { return Resolution(pixelsY); }
  // 0 where it has none, or one that is not said.
  float PixelAspect() const {
    if (pixelsX == 0 || pixelsX == pixelsY) return 0.0f;
    return static_cast<float>(pixelsY) / static_cast<float>(pixelsX);
  }

 private:
  float Resolution(std::uint32_t pixels) const {
    constexpr float kMetresInInch = 2.54f / 100.0f;
    return static_cast<float>(pixels) * (isInMetres ? kMetresInInch : 1.0f);
  }
};

// Two picture libraries make them, and each takes those of the other.
struct PictureMetadata {
  virtual ~PictureMetadata() = default;
  // Null for all but what the light library has read.
  virtual const PngMetadata* Png() const { return nullptr; }

  PictureInfo info;
  // The file declares premultiplied colours. Values are unchanged, and the output declares the same.
  bool associatedAlpha = false;
};

}  // namespace vblur::host
