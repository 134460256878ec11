// One PNG file opened with libpng.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <png.h>

#include "host/light/LightInput.h"

namespace vblur::host {

class PngInput final : public LightInput {
 public:
  // Of a plain file, whose header is read. Null where libpng has anything to say of it, or a chunk is not plain.
  static std::unique_ptr<PngInput> Open(const std::filesystem::path& file);
  ~PngInput() override;
  PngInput(const PngInput&) = delete;
  PngInput& operator=(const PngInput&) = delete;

  // Of samples as they are read: palettes are colours, keys of transparency are alpha, and samples of fewer bits
  // have 8.
  std::int32_t Width() const { return width_; }
  std::int32_t Height() const { return height_; }
  int Channels() const { return channels_; }
  int Bits() const { return bits_; }
  bool IsLinear() const { return isLinear_; }
  std::size_t RowBytes() const;
  // Of the file. False for what the full library alone reads.
  bool TakeExif(const LightAttributes& fields);
  const LightAttributes& Attributes() const override { return attributes_; }

  std::int32_t RowsAtOnce() const override;
  bool ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  const std::string& Message() const override { return message_; }

 private:
  PngInput() = default;
  bool ReadHeader();
  bool TakeMetadata();
  bool TakeTexts();
  bool TakeTime();
  void TakeResolution();
  static void OnError(png_structp png, png_const_charp message);
  static void OnWarning(png_structp png, png_const_charp message);

  std::FILE* file_ = nullptr;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  int channels_ = 0;
  int bits_ = 0;
  bool isLinear_ = false;
  LightAttributes attributes_;
  std::string message_;
};

}  // namespace vblur::host
