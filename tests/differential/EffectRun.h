// Renders a drawn frame with the effect, as the stand-alone host does.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "host/hosted/HostImage.h"
#include "host/hosted/HostedEffect.h"
#include "tests/differential/DrawnFrame.h"

namespace vblur::differential {

// The pictures of a drawn frame as the host's.
struct HostedPictures {
  explicit HostedPictures(const DrawnFrame& frame);

  // Borrowed from here.
  host::FramePictures Borrowed();

  host::HostImage output;
  std::optional<host::HostImage> input, input2, mask;
  std::array<std::int32_t, 2> maskOffset{0, 0};
};

// The output after the frame.
DrawnPicture RenderByEffect(const DrawnFrame& frame);

// Converts a drawn picture to the host's, placed by its record, and back.
void ToHostImage(const DrawnPicture& picture, std::int32_t depth, const host::ImageRecord& record,
                 host::HostImage& image);
DrawnPicture FromHostImage(const host::HostImage& image);

}  // namespace vblur::differential
