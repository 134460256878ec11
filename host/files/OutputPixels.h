// What the pixels of an output file consist of, and what the file loses.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"
#include "host/files/PictureReport.h"

namespace vblur::host {

struct OutputPixels {
  PixelLayout layout = PixelLayout::Rgba;
  SampleType type = SampleType::Unsigned8;
  // What the file loses of the source picture, a line each.
  std::vector<std::string> notes;
};

// `source` describes the file that the picture was read from; nothing for none. Notes what it loses of a grey one.
OutputPixels ChooseOutputPixels(const PictureToWrite& picture, const std::optional<PictureReport>& source);

// Adds the notes about all else, once. Waits for all rows of a picture that is rendered meanwhile.
void NoteLosses(const PictureToWrite& picture, const std::optional<PictureReport>& source, OutputPixels& chosen);

// Where a picture of this size lies in the coordinates of its source's file: both windows together, or the data window
// alone. Nothing for a picture of another size.
std::optional<FileWindow> PlaceInFile(const PictureInfo& source, std::int32_t width, std::int32_t height);

}  // namespace vblur::host
