// Exif data as files hold it: a block of directories of tags.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vblur::host {

struct ExifFacts {
  bool isExif = false;                          // a block with tags
  bool isDamaged = false;                       // none at all
  bool mayPass = false;                         // ExifForOutput takes it
  bool hasMakerNote = false;                    // what cameras note for themselves
  std::string description;                      // of the picture
  std::optional<std::size_t> wrongOrientation;  // a number that is none, for which ExifForOutput has the usual one
};

// Of a block that begins with "II" or "MM"; false and empty of any other.
ExifFacts FactsOfExif(std::string_view block);

struct ExifField {
  bool isGps = false;  // else of the picture or of the camera, which share their numbers
  std::size_t tag = 0;

  friend auto operator<=>(const ExifField&, const ExifField&) = default;
};

// Of a block, each once and rising, without those that lead to its own directories and those of a small copy.
std::vector<ExifField> FieldsOfExif(std::string_view block);

// The block for a picture that has other pixels: with its size and an orientation that is one, without the small copy
// of the picture before. Empty for a block whose small copy cannot be taken out.
std::string ExifForOutput(std::string block, std::int32_t width, std::int32_t height);

}  // namespace vblur::host
