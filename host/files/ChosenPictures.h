// Two picture libraries as one: the light one for what it takes, the full one for all else.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/files/LightPictures.h"

namespace vblur::host {

class ChosenPictures final : public PictureLibrary {
 public:
  // The libraries are asked for when they are needed. Without a full one (null) what the light one does not take is
  // refused.
  ChosenPictures(LightPictures& (*light)(), PictureLibrary& (*full)()) : light_(light), full_(full) {}

  std::unique_ptr<PictureSource> Open(const std::filesystem::path& path, const ReadChoice& choice) override;
  std::vector<std::string> Write(const PictureToWrite& picture, const StopTest& stop) override;
  PictureReport Report(const std::filesystem::path& path, const ReadChoice& choice) override;
  void Scale(const HostImage& from, HostImage& to) override;

 private:
  LightPictures& (*light_)();
  PictureLibrary& (*full_)();
};

}  // namespace vblur::host
