#include "host/base/UnnamedFile.h"

#include <string>
#include <system_error>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "host/base/PartFiles.h"
#include "host/base/Utf8.h"

namespace vblur::host {

// The file has a name here: what it is opened with anew would have to share its deletion. Those of processes that were
// killed are removed by the next one.
UnnamedFile::UnnamedFile() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) throw std::system_error(error, "there is no folder for temporary files (TMP)");
  RemoveAbandonedParts(folder);
  path_ = PartFileFor(folder / "vblur");
  note_ = std::make_unique<PartFileNote>(path_);
  constexpr int kHow = _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT;
  const errno_t wrong = _wsopen_s(&descriptor_, path_.c_str(), kHow, _SH_DENYNO, _S_IREAD | _S_IWRITE);
  if (wrong != 0) {
    throw std::system_error(wrong, std::generic_category(), Utf8Of(folder) + " takes no temporary files");
  }
}

UnnamedFile::~UnnamedFile() {
  _close(descriptor_);
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace vblur::host
