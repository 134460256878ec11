// Opens picture files with the picture library.
#pragma once

#include <exception>
#include <filesystem>
#include <memory>
#include <string>

#include <OpenImageIO/imageio.h>

#include "host/files/PictureInfo.h"
#include "host/pictures/PictureFileMetadata.h"

namespace vblur::host {

// While one exists, the standard error stream of the process is suppressed: format libraries print errors there that
// they also return. From any thread.
class PictureFileChatter {
 public:
  PictureFileChatter();
  ~PictureFileChatter();
  PictureFileChatter(const PictureFileChatter&) = delete;
  PictureFileChatter& operator=(const PictureFileChatter&) = delete;
};

struct OpenPicture {
  // What the output files may have of it.
  LibraryMetadata Metadata() const;

  std::unique_ptr<OIIO::ImageInput> file;
  PictureInfo info;
};

// Opens the first picture of a file that RequirePictureFile accepts, so that components come as they are stored.
// Throws as ReadPictureInfo does.
OpenPicture OpenPictureFile(const std::filesystem::path& path, const ReadChoice& choice);

// Readers of damaged files may throw instead of returning an error. Throws Failure (cannot read).
[[noreturn]] void RefuseDamaged(const std::filesystem::path& path, const std::exception& error);

OIIO::TypeDesc TypeOf(SampleKind kind);

// The first line of a library's message without what repeats the file name, or a text in its place.
std::string LibraryMessage(const std::string& message, const std::string& otherwise);

}  // namespace vblur::host
