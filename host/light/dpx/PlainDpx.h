// Which DPX files are plain: those of one picture whose every field is read here as the full picture library reads it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/light/LightMetadata.h"
#include "host/light/dpx/DpxPacking.h"

namespace vblur::host {

struct PlainDpx {
  std::int32_t width = 0;
  std::int32_t height = 0;
  int channels = 3;
  DpxPacking packing;
  std::int64_t begin = 0;  // of the pixels, in the file
  std::string header;      // as in PictureInfo
  LightAttributes attributes;

  std::size_t Samples() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(channels); }
  std::size_t RowBytes() const { return packing.RowBytes(Samples()); }
};

// Of a file to open. Nothing for one that is not plain: of several elements, of other channels than grey and colours
// with and without alpha, turned, packed by run lengths, or cut short.
std::optional<PlainDpx> PlainDpxOf(const std::filesystem::path& file);

}  // namespace vblur::host
