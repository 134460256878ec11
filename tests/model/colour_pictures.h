// Converts pictures between the frame's pixels and what the filter works on: YUV, grey, single channels. Windows must
// lie inside the output, as Settle returns them.
#pragma once

#include <cstdint>

#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

/// One pixel as stored in the YUV picture: each component at half resolution in 0..top.
Pixel YuvPixel(const Pixel& rgb, Depth depth);

/// One pixel of the YUV picture as RGB; alpha is unchanged.
Pixel RgbPixel(const Pixel& yuv, Depth depth);

/// Grey in all four components.
Pixel GreyPixel(std::int32_t grey, Depth depth);

/// Also gives the output the converted outside colour of the input.
void RgbToYuv(const Picture& input, Picture& output, Depth depth, const Window& window);

void YuvToRgb(const Picture& input, Picture& output, Depth depth, const Window& window);

/// Floats: the source with what changed in its YUV added to the colours, and its own alpha.
void ChangeYuv(const Picture& source, const Picture& yuv, Picture& output, const Window& window);

/// Copies the red of the input to the first component of the output.
void ExtractRed(const Picture& input, Picture& output, const Window& window);

void GreyToRgb(const Picture& input, Picture& output, Depth depth, const Window& window);

}  // namespace model
