// What an output file consists of: its description for the picture library, and where its samples come from.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "host/files/PictureLibrary.h"
#include "host/pictures/PictureFileMetadata.h"

namespace vblur::host {

// A channel of the file: one of the picture's four components, or one that passes from the source.
struct OutputChannel {
  std::string name;
  int component = -1;  // -1: passing
  SampleType type = SampleType::Unsigned8;
  // Of a passing channel: its type in the file and in the source, and its place in a pixel of LibraryMetadata::passing.
  OIIO::TypeDesc passedAs;
  OIIO::TypeDesc passedFrom;
  std::size_t place = 0;

  // As the picture library takes it.
  OIIO::TypeDesc LibraryType() const;
};

struct OutputLayout {
  OIIO::ImageSpec spec;
  std::vector<OutputChannel> channels;
  // Where the picture lies in the coordinates of the file; `spec` has the part that is written.
  FileWindow picture;
  // What the file loses of the source picture, a line each.
  std::vector<std::string> notes;

  std::size_t PixelBytes() const;
};

OutputLayout PlanOutput(const PictureToWrite& picture);

}  // namespace vblur::host
