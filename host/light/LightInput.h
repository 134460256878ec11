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

// What the functions of a module for one format share. Those of the format are thread-safe, and throw as the methods of
// PictureLibrary do.
class LightModule : public LightPictures {
 public:
  std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) override;
  std::optional<PictureReport> Report(const std::filesystem::path& path, const ReadChoice& choice) override;

 private:
  // Without a file for one that the full library has to read.
  virtual OpenedLight OpenFile(const std::filesystem::path& path, const ReadChoice& choice) const = 0;
};

}  // namespace vblur::host
