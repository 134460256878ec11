#include "host/files/PictureLibrary.h"

#include <string>

#include "host/base/HostFolder.h"
#include "host/base/LibraryResources.h"

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

PictureLibrary& ThePictureLibrary() {
  static PictureLibrary& library = *ThePictureModule().Get<PictureLibraryFunction>(kPictureLibraryFunction)();
  return library;
}

}  // namespace vblur::host
