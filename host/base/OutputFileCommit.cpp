#include "host/base/OutputFileCommit.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "host/base/Failure.h"
#include "host/base/PartFiles.h"
#include "host/base/RealPaths.h"

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

}  // namespace

OutputFileCommit::OutputFileCommit(const std::filesystem::path& target)
    : target_(EndOfLinks(target)), written_(PartFileFor(target_)), note_(written_) {}

OutputFileCommit::~OutputFileCommit() {
  std::error_code ignored;
  if (!committed_) std::filesystem::remove(written_, ignored);
}

void OutputFileCommit::Sync() {
  if (const int error = SyncPath(written_, 0)) RefuseToWrite(target_, std::generic_category().message(error));
  synced_ = true;
}

void OutputFileCommit::Commit() {
  std::error_code error;
  const auto old = std::filesystem::status(target_, error);
  if (std::filesystem::is_regular_file(old)) std::filesystem::permissions(written_, old.permissions(), error);
  error.clear();
  std::filesystem::rename(written_, target_, error);
  if (error) RefuseToWrite(target_, error.message());
  committed_ = true;
  if (!synced_) return;
  // A folder may be writable but not readable.
  const auto folder = target_.parent_path();
  const int unsynced = SyncPath(folder.empty() ? "." : folder, O_DIRECTORY);
  if (unsynced != 0 && unsynced != EACCES) RefuseToWrite(target_, std::generic_category().message(unsynced));
}

}  // namespace vblur::host
