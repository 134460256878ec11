#include "host/files/PictureLibrary.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <string>

#include "host/base/HostFolder.h"
#include "host/base/LibraryResources.h"
#include "host/files/ChosenPictures.h"
#include "host/files/LightPictures.h"

namespace vblur::host {

namespace {

LoadedModule LoadPictureModule() {
  const std::string what = "the picture library";
  RequireResourcesToLoad(what);
  LoadedModule module(HostFolder() / "libvblur_host_pictures.so", what);
  module.RequireOurVersion();
  return module;
}

}  // namespace

const LoadedModule& ThePictureModule() {
  static const LoadedModule module = LoadPictureModule();
  return module;
}

namespace {

PictureLibrary& FullPictures() {
  static PictureLibrary& library = *ThePictureModule().Get<PictureLibraryFunction>(kPictureLibraryFunction)();
  return library;
}

// One of a format, loaded at the first call.
LightPictures& TheLightPictures(std::string_view format) {
  struct Module {
    std::once_flag isLoaded;
    std::optional<LoadedModule> module;
    LightPictures* pictures = nullptr;
  };
  static std::array<Module, kLightFormats.size()> modules;
  const auto at = static_cast<std::size_t>(std::ranges::find(kLightFormats, format) - kLightFormats.begin());
  Module& light = modules.at(at);
  std::call_once(light.isLoaded, [&] {
    light.module.emplace(HostFolder() / ("libvblur_host_light_" + std::string(format) + ".so"),
                         "the light picture library");
    light.module->RequireOurVersion();
    light.pictures = light.module->Get<LightPicturesFunction>(kLightPicturesFunction)();
  });
  return *light.pictures;
}

std::atomic<PictureLibraries> used{PictureLibraries::Automatic};

}  // namespace

void UsePictures(PictureLibraries libraries) {
  used = libraries;
}

PictureLibrary& ThePictureLibrary() {
  static ChosenPictures automatic(TheLightPictures, FullPictures);
  static ChosenPictures light(TheLightPictures, nullptr);
  if (used == PictureLibraries::Full) return FullPictures();
  return used == PictureLibraries::Light ? light : automatic;
}

}  // namespace vblur::host
