// Reads picture files into the effect's pictures. Files are top-down, the effect's row 0 is the
// bottom. Components pass as they are stored: no colour management, alpha neither multiplied in nor
// divided out. Of a file with several pictures the first is read, of a picture whose data window is not
// its display window the data window.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "host/files/PictureInfo.h"
#include "host/hosted/HostImage.h"

namespace vblur::host {

// What a file tells beside its pixels; opaque to everyone but those who read and write files.
struct PictureMetadata;

// Asked now and then while a file is read or written; true ends the work with FileInterrupted.
using StopTest = std::function<bool()>;

struct FileInterrupted {};

struct ReadPicture {
  PictureInfo info;
  std::shared_ptr<const PictureMetadata> metadata;
  // The file says that its colours are multiplied by alpha.
  bool associatedAlpha = false;
};

// Keeps its buffer from one file to the next. One thread at a time.
class PictureReader {
 public:
  explicit PictureReader(StopTest stop = {}) : stop_(std::move(stop)) {}

  // Four components of `depth` bits (8 or 16). A grey picture is spread over red, green and blue; one
  // without alpha gets a full one. Throws as ReadPictureInfo does, and when the pixels cannot be read.
  ReadPicture ReadColour(const std::filesystem::path& path, std::int32_t depth, HostImage& into);
  // One component: the first channel of the file.
  ReadPicture ReadMask(const std::filesystem::path& path, std::int32_t depth, HostImage& into);

 private:
  ReadPicture Read(const std::filesystem::path& path, std::int32_t depth, std::int32_t components, HostImage& into);

  StopTest stop_;
  std::vector<std::byte> samples_;
};

}  // namespace vblur::host
