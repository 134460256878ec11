// One OpenEXR file opened with its library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <ImfFrameBuffer.h>
#include <ImfInputPart.h>
#include <ImfMultiPartInputFile.h>
#include <ImfStdIO.h>

#include "host/files/PictureInfo.h"
#include "host/light/LightInput.h"

namespace vblur::host {

class ExrInput final : public LightInput {
 public:
  // Of a plain file, whose header is read: of at most `mostPixels`. Null where the library has anything to say of it,
  // or something in it is not plain.
  static std::unique_ptr<ExrInput> Open(const std::filesystem::path& file, std::int64_t mostPixels);

  const FileWindow& Data() const { return data_; }
  const FileWindow& Display() const { return display_; }
  // Of its tiles; 0: it has none.
  std::int32_t TileWidth() const { return tileWidth_; }
  std::int32_t TileHeight() const { return tileHeight_; }
  // In the order of the full library: colours and then alpha.
  const std::vector<FileChannel>& Channels() const { return channels_; }
  const LightAttributes& Attributes() const override { return attributes_; }

  std::int32_t RowsAtOnce() const override { return rowsAtOnce_; }
  // As floats.
  bool ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  const std::string& Message() const override { return message_; }

 private:
  explicit ExrInput(const std::filesystem::path& file) : file_(file, std::ios::binary), stream_(file_, file.c_str()) {}
  bool ReadHeader(std::int64_t mostPixels);
  void OpenPart(int threads);
  bool TakeWindows(const Imf::Header& header, std::int64_t mostPixels);
  bool TakeChannels(const Imf::Header& header);
  bool TakeTiles(const Imf::Header& header);
  std::size_t PixelBytes() const { return channels_.size() * sizeof(float); }
  std::size_t RowBytes() const { return static_cast<std::size_t>(data_.width) * PixelBytes(); }

  std::ifstream file_;
  Imf::StdIFStream stream_;
  std::unique_ptr<Imf::MultiPartInputFile> parts_;
  std::unique_ptr<Imf::InputPart> part_;
  FileWindow data_;
  FileWindow display_;
  std::int32_t tileWidth_ = 0;
  std::int32_t tileHeight_ = 0;
  std::vector<FileChannel> channels_;
  LightAttributes attributes_;
  std::int32_t threads_ = 1;
  std::int32_t rowsAtOnce_ = 1;
  std::string message_;
};

}  // namespace vblur::host
