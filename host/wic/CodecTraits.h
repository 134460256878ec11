// What codecs of some systems do otherwise, found out with a picture in memory. Each is tried until there is an answer,
// which is kept. All throw std::runtime_error while there is none. From any thread.
#pragma once

#include <optional>
#include <string>

#include "host/files/OutputFormat.h"
#include "host/files/PictureReport.h"

namespace vblur::host {

// Samples of 16 bits stand the wrong way round in the PNG files that the codec writes.
bool SwapsPngSamples();
// What the codec gives of samples of 16 bits of a TIFF file.
struct TiffSamples {
  bool areTurned = false;   // where the least is white: it has become black
  bool areSwapped = false;  // their bytes stand the wrong way round
};
// Of files whose numbers begin with their high bytes ("MM") or low ones. Nothing where it gives something else.
std::optional<TiffSamples> TiffSamplesOf(bool isBig, bool isWhiteLeast);
// What the codec of a format lacks of what the format has.
const PartsLacking& LackingOf(const OutputFormat& format);
// The compression of a TIFF file for which the codec is asked for one of the format's.
std::string WrittenTiffCompression(const std::string& asked);

}  // namespace vblur::host
