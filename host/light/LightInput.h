// A plain picture file opened by the light library, and what the host makes of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/files/LightPictures.h"
#include "host/light/LightMetadata.h"

namespace vblur::host {

// One thread at a time.
class LightInput {
 public:
  virtual ~LightInput() = default;

  virtual const LightAttributes& Attributes() const = 0;
  // A multiple of what the format packs together, of some megabytes.
  virtual std::int32_t RowsAtOnce() const = 0;
  // The rows of the data window from `first` on, 0 its top one: every row once, from the top on. All channels of a
  // pixel side by side, of the type PictureInfo::samples. False for damaged ones.
  virtual bool ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) = 0;
  // What the format's library said last.
  virtual const std::string& Message() const = 0;
};

struct OpenedLight {
  std::unique_ptr<LightInput> file;  // null for a file that is not plain
  PictureInfo info;
  bool associatedAlpha = false;  // the file declares its colours as premultiplied
};

// What is known of the pixels of a file without windows: `channels` are one or two of grey, or three or four of
// colours.
struct LightPixels {
  std::int32_t width = 0;
  std::int32_t height = 0;
  int channels = 3;
  StoredType type;
};
// Throws as PictureLibrary::Open does.
PictureInfo DescribeLight(const std::filesystem::path& path, const std::string& format, const LightPixels& pixels,
                          const ReadChoice& choice);

// What the modules of all formats do. What they have of their own is thread-safe, and throws as the methods of
// PictureLibrary do.
class LightModule : public LightPictures {
 public:
  std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) override;
  std::optional<PictureReport> Report(const std::filesystem::path& path, const ReadChoice& choice) override;

 private:
  OpenedLight OpenWhole(const std::filesystem::path& path, const ReadChoice& choice) const;
  // Without a file for one that the full library has to read.
  virtual OpenedLight OpenFile(const std::filesystem::path& path, const ReadChoice& choice) const = 0;
};

// Of a format's functions, as in OpenPng, IsPlainPng and WritePng.
template <auto open, auto isPlain, auto write>
class LightModuleOf final : public LightModule {
 public:
  bool Writes(const PictureToWrite& picture) const override { return isPlain(picture); }
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override {
    return write(picture, stop);
  }

 private:
  OpenedLight OpenFile(const std::filesystem::path& path, const ReadChoice& choice) const override {
    return open(path, choice);
  }
};

}  // namespace vblur::host
