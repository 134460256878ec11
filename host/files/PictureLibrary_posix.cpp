#include "host/files/PictureLibrary.h"

#include <atomic>
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

LightPictures& TheLightPictures() {
  static const LoadedModule module = [] {
    LoadedModule light(HostFolder() / "libvblur_host_light.so", "the light picture library");
    light.RequireOurVersion();
    return light;
  }();
  static LightPictures& library = *module.Get<LightPicturesFunction>(kLightPicturesFunction)();
  return library;
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
