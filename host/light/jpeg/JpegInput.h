// One JPEG file opened with libjpeg.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/light/LightInput.h"
#include "host/light/jpeg/JpegErrors.h"
#include "host/light/jpeg/PlainJpeg.h"

namespace vblur::host {

class JpegInput final : public LightInput {
 public:
  // Of a plain file, whose header is read. Null where libjpeg has anything to say of it.
  static std::unique_ptr<JpegInput> Open(const std::filesystem::path& file);
  // Before the first row, and when the size is known: all of a progressive picture is unpacked now. False for a file
  // that libjpeg has something to say of.
  bool Start();
  ~JpegInput() override;
  JpegInput(const JpegInput&) = delete;
  JpegInput& operator=(const JpegInput&) = delete;

  std::int32_t Width() const { return static_cast<std::int32_t>(jpeg_.image_width); }
  std::int32_t Height() const { return static_cast<std::int32_t>(jpeg_.image_height); }
  int Channels() const { return jpeg_.num_components; }
  const std::string& Exif() const { return plain_.exif; }
  // Its fields that are not given.
  const std::vector<ExifFieldName>& UnreadExif() const { return unread_; }

  const LightAttributes& Attributes() const override { return attributes_; }
  std::int32_t RowsAtOnce() const override;
  bool ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  const std::string& Message() const override { return errors_.message; }

 private:
  explicit JpegInput(PlainJpeg plain) : plain_(std::move(plain)) {}
  bool ReadHeader();
  bool TakeMetadata();
  bool TakeProfile();
  bool TakeResolution(const LightAttributes& ofExif);

  PlainJpeg plain_;
  JpegErrors errors_;
  std::FILE* file_ = nullptr;
  jpeg_decompress_struct jpeg_{};
  LightAttributes attributes_;
  std::vector<ExifFieldName> unread_;
};

}  // namespace vblur::host
