#include "host/base/OutputFileCommit.h"

#include <string>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/PartFiles.h"
#include "host/base/RealPaths.h"
#include "host/base/SystemFiles.h"

namespace vblur::host {

OutputFileCommit::OutputFileCommit(const std::filesystem::path& target)
    : target_(ExtendedPath(EndOfLinks(target))), written_(PartFileFor(target_)), note_(written_) {}

OutputFileCommit::~OutputFileCommit() {
  std::error_code ignored;
  if (!committed_) std::filesystem::remove(ExtendedPath(written_), ignored);
}

void OutputFileCommit::Sync() {
  if (const std::string error = SyncFile(written_); !error.empty()) RefuseToWrite(target_, error);
  synced_ = true;
}

void OutputFileCommit::Commit() {
  CopyPermissions(target_, written_);
  if (const std::string error = MoveOver(written_, target_); !error.empty()) RefuseToWrite(target_, error);
  committed_ = true;
  if (!synced_) return;
  const auto folder = target_.parent_path();
  if (const std::string error = SyncFolder(folder.empty() ? "." : folder); !error.empty())
    RefuseToWrite(target_, error);
}

}  // namespace vblur::host
