// Samples of DPX files that the picture library reads as others than the file has: those of 12 bits in 16, which it
// gives without their lowest bits, so that white is not white, and an alpha of 10 bits that has the last word of a row
// for itself, as in 4 pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>

#include <OpenImageIO/imageio.h>

#include "host/formats/DpxHeader.h"

namespace vblur::host {

class DpxSamples {
 public:
  // Nothing for a file that is read as it is; `header` is that of the file to open.
  static std::optional<DpxSamples> Of(const std::filesystem::path& file, const DpxHeader& header,
                                      const OIIO::ImageSpec& spec);

  // Of rows of whole pixels as the library gives them unconverted.
  void Mend(std::int32_t first, std::int32_t count, std::byte* samples);

 private:
  DpxSamples(const std::filesystem::path& file, const DpxHeader& header, std::size_t samples);
  void MendLast(std::int32_t row, std::byte* sample);

  std::ifstream file_;
  DpxHeader header_;
  std::size_t samples_;  // of a row
};

}  // namespace vblur::host
