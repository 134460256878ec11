// What codecs of some systems do otherwise, found out with a picture in memory. Each is tried once. From any thread.
#pragma once

namespace vblur::host {

// Samples of 16 bits stand the wrong way round in the PNG files that the codec writes.
bool SwapsPngSamples();
// The quality that is asked for makes a difference to a JPEG file.
bool HasJpegQuality();

}  // namespace vblur::host
