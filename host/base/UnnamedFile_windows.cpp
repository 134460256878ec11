#include "host/base/UnnamedFile.h"

#include <string>
#include <system_error>

#include <fcntl.h>
#include <io.h>

#include "host/base/PartFiles.h"
#include "host/base/Utf8.h"

#include <windows.h>

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
  // It may be removed while it is open, for a process that has to end at once.
  constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(path_.c_str(), GENERIC_READ | GENERIC_WRITE, kSharing, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY, nullptr);
  if (file != INVALID_HANDLE_VALUE)
    descriptor_ = _open_osfhandle(reinterpret_cast<intptr_t>(file), _O_BINARY | _O_NOINHERIT);
  if (descriptor_ >= 0) return;
  // In the words of other systems.
  const auto wrong = std::system_category().default_error_condition(static_cast<int>(GetLastError()));
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  throw std::system_error(std::error_code(wrong.value(), wrong.category()),
                          Utf8Of(folder) + " takes no temporary files");
}

UnnamedFile::~UnnamedFile() {
  _close(descriptor_);
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace vblur::host
