// Pictures between the frame's pixels and the representations that the filter may act on.
// Every window here lies inside the output, as Settle leaves it.
#pragma once

#include <cstdint>

#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

/// One pixel into the YUV picture, where every component is held at half resolution in 0..top.
Pixel YuvPixel(const Pixel& rgb, Depth depth);

/// One pixel back from the YUV picture, alpha as it stands.
Pixel RgbPixel(const Pixel& yuv, Depth depth);

/// Grey in all four components.
Pixel GreyPixel(std::int32_t grey, Depth depth);

/// Also gives the output the converted outside colour of the input.
void RgbToYuv(const Picture& input, Picture& output, Depth depth, const Window& window);

void YuvToRgb(const Picture& input, Picture& output, Depth depth, const Window& window);

/// The red of the input into the first component of the output.
void ExtractRed(const Picture& input, Picture& output, const Window& window);

void GreyToRgb(const Picture& input, Picture& output, Depth depth, const Window& window);

}  // namespace model
