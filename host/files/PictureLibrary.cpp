#include "host/files/PictureLibrary.h"

#include "host/base/HostFolder.h"

namespace vblur::host {

const LoadedModule& ThePictureModule() {
  static const LoadedModule module(HostFolder() / "libvblur_host_pictures.so", "the picture library");
  return module;
}

PictureLibrary& ThePictureLibrary() {
  static PictureLibrary& library = *ThePictureModule().Get<PictureLibraryFunction>(kPictureLibraryFunction)();
  return library;
}

}  // namespace vblur::host
