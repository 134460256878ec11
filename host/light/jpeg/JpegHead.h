// What a JPEG file has before its pixels, of what is known of the picture.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

struct JpegHead {
  // Pixels by a unit: 0 none, 1 inch, 2 centimetre. Both 0: not known.
  std::uint8_t unit = 0;
  std::uint16_t x = 1;
  std::uint16_t y = 1;
  std::string comment{};  // with a zero at its end; empty: none
  std::string exif{};
  bool isSourcesExif = false;  // it stands before the comment
  std::string iptc{};          // empty: none
  std::string profile{};
};

// Of a picture that goes to a JPEG file whose pixels have this layout, as the full library writes it. Nothing where
// that is not known here.
std::optional<JpegHead> JpegHeadOf(const PictureToWrite& picture, PixelLayout pixels);

}  // namespace vblur::host
