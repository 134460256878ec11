// Reads picture files into the effect's pictures. Files are top-down, the effect's row 0 is the bottom. Components pass
// as stored: no colour management, alpha neither multiplied in nor divided out. Reads the first picture of a file.
//
// The picture is the display window and the data window together. What no data covers is transparent black, of alpha 0
// even in a picture without alpha: nothing is known of it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/files/PictureInfo.h"
#include "host/hosted/HostImage.h"

namespace vblur::host {

// Metadata of a file; opaque except to the picture library.
struct PictureMetadata;

// Polled while a file is read or written; true stops with FileInterrupted.
using StopTest = std::function<bool()>;

struct FileInterrupted {};

// Samples of a file's data window, the top row first: the channels of PictureInfo::Taken, of the kind in its info.
using FileSamples = std::shared_ptr<const std::vector<std::byte>>;

struct ReadPicture {
  PictureInfo info;
  std::shared_ptr<const PictureMetadata> metadata;
  // The file declares its colours as premultiplied.
  bool associatedAlpha = false;
  // What the picture has lost, a line each that begins with the file: further pictures, values beyond the depth.
  std::vector<std::string> losses;
  // Null unless they are kept.
  FileSamples samples{};
  // At a depth of 32, in place of a line among the losses: values beyond it.
  BeyondRange beyond{};
};

// Follows a picture while it is read.
struct ReadingWatch {
  // The picture has its size, and all is known of it but what its values lose. Not called for files of which more is
  // found behind their rows.
  std::function<void(const ReadPicture& read)> onSize;
  // So many rows of the picture are there, from the top on; never before `onSize`, and on another thread.
  std::function<void(std::int32_t rows)> onRows;
};

// Reuses its buffer for the next file. One thread at a time.
class PictureReader {
 public:
  explicit PictureReader(StopTest stop = {}) : stop_(std::move(stop)) {}

  // Four components of `depth` bits (8, 16 or 32). A grey picture is spread over red, green and blue; one
  // without alpha gets a full one. Throws as ReadPictureInfo does, and when the pixels cannot be read. `watch` is null
  // for none.
  ReadPicture ReadColour(const std::filesystem::path& path, std::int32_t depth, HostImage& into,
                         const ReadChoice& choice = {}, const ReadingWatch* watch = nullptr);
  // One component: the channel that the choice names, else the first of the file, or alpha where that is the only one
  // that varies.
  ReadPicture ReadMask(const std::filesystem::path& path, std::int32_t depth, HostImage& into,
                       const ReadChoice& choice = {});

 private:
  ReadPicture Read(const std::filesystem::path& path, const ReadChoice& choice, std::int32_t depth, HostImage& into,
                   const ReadingWatch* watch);

  StopTest stop_;
  std::vector<std::byte> samples_[2];  // parts of a file's rows: one that is read, and the one before
};

}  // namespace vblur::host
