#include "host/base/UnnamedFile.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace vblur::host {

UnnamedFile::UnnamedFile() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) throw std::system_error(error, "there is no folder for temporary files (TMPDIR)");
  std::string name = (folder / "vblur-XXXXXX").string();
  descriptor_ = ::mkostemp(name.data(), O_CLOEXEC);
  if (descriptor_ < 0) {
    throw std::system_error(errno, std::generic_category(), folder.string() + " takes no temporary files");
  }
  ::unlink(name.c_str());
  path_ = "/proc/self/fd/" + std::to_string(descriptor_);
}

UnnamedFile::~UnnamedFile() {
  ::close(descriptor_);
}

}  // namespace vblur::host
