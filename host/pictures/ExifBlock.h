// Exif data as files hold it: a block of directories of tags.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vblur::host {

struct ExifFacts {
  bool isExif = false;        // a block with tags
  bool mayPass = false;       // ExifForOutput takes it
  bool hasMakerNote = false;  // what cameras note for themselves
  std::string description;    // of the picture
};

// Of a block that begins with "II" or "MM"; false and empty of any other.
ExifFacts FactsOfExif(std::string_view block);

// The block for a picture that has other pixels: with its size, without the small copy of the picture before. Empty for
// a block whose small copy cannot be taken out.
std::string ExifForOutput(std::string block, std::int32_t width, std::int32_t height);

}  // namespace vblur::host
