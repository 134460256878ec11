#include "host/files/PictureInfo.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "host/base/Failure.h"
#include "host/files/PictureLibrary.h"

namespace vblur::host {

void RequirePictureFile(const std::filesystem::path& path) {
  const auto refuse = [&path](const std::string& why) {
    throw Failure(ExitCode::CannotRead, path.string() + ": cannot read: " + why);
  };
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) refuse("no such file");
  if (std::filesystem::is_directory(status)) refuse("it is a folder, a picture file was expected");
  if (!std::filesystem::is_regular_file(status)) refuse("not a regular file");
  if (std::filesystem::file_size(path, error) == 0 && !error) refuse("the file is empty, a picture was expected");
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (!file) refuse(std::strerror(errno));
  std::fclose(file);
}

PictureInfo ReadPictureInfo(const std::filesystem::path& path) {
  RequirePictureFile(path);
  return ThePictureLibrary().Open(path)->info();
}

}  // namespace vblur::host
