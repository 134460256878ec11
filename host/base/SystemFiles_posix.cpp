#include "host/base/SystemFiles.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace vblur::host {

namespace {

// 0, or the system's number of the error. File systems that cannot sync a file or a folder keep it by other means.
int SyncPath(const std::filesystem::path& path, int flags) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags);
  if (file < 0) return errno;
  const int error = ::fsync(file) == 0 ? 0 : errno;
  ::close(file);
  return error == EINVAL || error == ENOTSUP ? 0 : error;
}

std::string TextOf(int error) {
  return error == 0 ? std::string() : std::generic_category().message(error);
}

}  // namespace

std::string FlawOfName(const std::filesystem::path& /*file*/) {
  return {};
}

std::string FlawOfInputName(const std::filesystem::path& /*file*/) {
  return {};
}

const NameLimits kNameLimits{"bytes", 255, 4095};

std::size_t LengthOfName(std::string_view name) {
  return name.size();
}

std::vector<std::filesystem::path> EntriesOf(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
    names.push_back(entry->path().filename());
  return names;
}

std::string TryToRead(const std::filesystem::path& file) {
  const int opened = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (opened < 0) return TextOf(errno);
  ::close(opened);
  return {};
}

std::string WriteWhole(const std::filesystem::path& file, std::string_view bytes) {
  errno = 0;
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  stream.close();
  if (stream) return {};
  return errno == 0 ? "the system reports an error" : TextOf(errno);
}

std::string SyncFile(const std::filesystem::path& file) {
  return TextOf(SyncPath(file, 0));
}

std::string SyncFolder(const std::filesystem::path& folder) {
  const int error = SyncPath(folder, O_DIRECTORY);
  // A folder may be writable but not readable.
  return TextOf(error == EACCES ? 0 : error);
}

void CopyPermissions(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  const auto old = std::filesystem::status(from, error);
  if (std::filesystem::is_regular_file(old)) std::filesystem::permissions(to, old.permissions(), error);
}

std::string MoveOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  return error ? error.message() : std::string();
}

void RemoveAtOnce(const char* file) noexcept {
  ::unlink(file);
}

}  // namespace vblur::host
