// One TIFF file opened with libtiff.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/light/LightInput.h"
#include "host/light/tiff/PlainTiff.h"
#include "host/light/tiff/TiffHandle.h"

namespace vblur::host {

// Strips of large pictures are unpacked on all processors.
class TiffInput final : public LightInput {
 public:
  // Null for a file that is not plain.
  static std::unique_ptr<TiffInput> Open(const std::filesystem::path& file);

  const PlainTiff& Facts() const { return tiff_; }

  const LightAttributes& Attributes() const override { return tiff_.attributes; }
  std::int32_t RowsAtOnce() const override;
  bool ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  const std::string& Message() const override { return message_; }

 private:
  TiffInput(std::filesystem::path file, PlainTiff tiff) : file_(std::move(file)), tiff_(std::move(tiff)) {}

  std::size_t RowSamples() const {
    return static_cast<std::size_t>(tiff_.width) * static_cast<std::size_t>(tiff_.channels);
  }
  std::size_t StoredBytes() const { return RowSamples() * static_cast<std::size_t>(tiff_.bits / 8); }
  // As they are given: halves as floats.
  std::size_t RowBytes() const { return IsOfHalves() ? RowSamples() * sizeof(float) : StoredBytes(); }
  bool IsOfHalves() const { return tiff_.isFloat && tiff_.bits == 16; }
  bool IsTiled() const { return tiff_.tileWidth > 0; }
  // False for strips or tiles of other sizes than the tags say.
  bool TakeStrips(TIFF* tiff);
  bool ReadStrip(TIFF* tiff, std::int32_t strip, std::int32_t rows, std::byte* given) const;
  // A strip is a row of tiles here, whose columns and rows beyond the picture are not given.
  bool ReadTiles(TIFF* tiff, std::int32_t strip, std::int32_t rows, std::byte* given) const;
  // Strips from one on, one after the other. False for a damaged one.
  bool ReadStrips(TIFF* tiff, std::int32_t strip, std::int32_t end, std::int32_t firstRow, std::byte* samples) const;
  bool ReadOnThreads(std::int32_t strip, std::int32_t end, std::int32_t firstRow, std::byte* samples);

  std::filesystem::path file_;
  PlainTiff tiff_;
  std::vector<TiffHandle> handles_;  // the first one exists
  std::int32_t stripRows_ = 1;       // or of a tile
  std::string message_ = "its strips";
};

}  // namespace vblur::host
