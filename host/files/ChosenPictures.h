// Two picture libraries as one: the light one, a module for each format, for what it takes, the full one for all else.
#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/LightPictures.h"

namespace vblur::host {

// The formats of the light library, by their names (OutputFormat::name).
inline constexpr std::array<std::string_view, 5> kLightFormats{"png", "jpeg", "tiff", "openexr", "dpx"};

class ChosenPictures final : public PictureLibrary {
 public:
  // The libraries are asked for when they are needed: `light` for one of the formats above. Without a full one (null)
  // what the light one does not take is refused.
  ChosenPictures(LightPictures& (*light)(std::string_view format), PictureLibrary& (*full)())
      : light_(light), full_(full) {}

  std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) override;
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override;
  PictureReport Report(const std::filesystem::path& path, const ReadChoice& choice) override;
  void Scale(const HostImage& from, HostImage& to) override;

 private:
  // For a file that is read; null where no module may take it.
  LightPictures* LightFor(const std::filesystem::path& path) const;

  LightPictures& (*light_)(std::string_view format);
  PictureLibrary& (*full_)();
};

}  // namespace vblur::host
