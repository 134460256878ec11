// How picture files are opened, for the few files that talk to the picture library.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <OpenImageIO/imageio.h>

#include "host/files/PictureInfo.h"

namespace vblur::host {

// While one lives, what libraries print on the standard error stream by themselves is dropped: their
// errors come back as results and are reported once. For the whole process, from any thread.
class PictureFileChatter {
 public:
  PictureFileChatter();
  ~PictureFileChatter();
  PictureFileChatter(const PictureFileChatter&) = delete;
  PictureFileChatter& operator=(const PictureFileChatter&) = delete;
};

struct OpenPicture {
  std::unique_ptr<OIIO::ImageInput> file;
  PictureInfo info;
};

// Opens the first picture of a file that RequirePictureFile accepts, so that components come as they are stored.
// Throws as ReadPictureInfo does.
OpenPicture OpenPictureFile(const std::filesystem::path& path);

OIIO::TypeDesc TypeOf(SampleKind kind);

// The first line of a library's message without what repeats the file name, or a text in its place.
std::string LibraryMessage(const std::string& message, const std::string& otherwise);

}  // namespace vblur::host
