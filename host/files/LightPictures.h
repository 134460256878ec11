// The light picture library: modules that read and write plain files of one format each without the libraries of the
// full one. What they take, they read and write as the full one does, to the last sample and attribute.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// Thread-safe. The methods throw as those of PictureLibrary do.
class LightPictures {
 public:
  virtual ~LightPictures() = default;

  // Null for a file that the full library has to read. Rows that cannot be read are to be read by that, too, which may
  // have more to say of the damage.
  virtual std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) = 0;
  // Nothing for a file that the full library has to read.
  virtual std::optional<PictureReport> Report(const std::filesystem::path& path, const ReadChoice& choice) = 0;
  // Of a picture for a file of the module's format.
  virtual bool Writes(const PictureToWrite& picture) const = 0;
  // Of a picture that it writes.
  virtual std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) = 0;
};

// What a module exports, by this name.
using LightPicturesFunction = LightPictures*();
inline constexpr const char* kLightPicturesFunction = "VBlurLightPictures";

}  // namespace vblur::host
