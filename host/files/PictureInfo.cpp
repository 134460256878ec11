#include "host/files/PictureInfo.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "host/base/Failure.h"
#include "host/files/PictureLibrary.h"

namespace vblur::host {

std::size_t PictureInfo::PassingBytes() const {
  std::size_t bytes = 0;
  for (const int channel : passing)
    bytes += static_cast<std::size_t>(all[static_cast<std::size_t>(channel)].type.bytes);
  return bytes;
}

void RequirePictureFile(const std::filesystem::path& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) RefuseToRead(path, "no such file");
  if (std::filesystem::is_directory(status)) RefuseToRead(path, "it is a folder, a picture file was expected");
  if (!std::filesystem::is_regular_file(status)) RefuseToRead(path, "not a regular file");
  if (std::filesystem::file_size(path, error) == 0 && !error)
    RefuseToRead(path, "the file is empty, a picture was expected");
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (!file) RefuseToRead(path, std::strerror(errno));
  std::fclose(file);
}

PictureInfo ReadPictureInfo(const std::filesystem::path& path) {
  RequirePictureFile(path);
  return ThePictureLibrary().Open(path)->Info();
}

}  // namespace vblur::host
