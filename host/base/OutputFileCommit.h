// A temporary file that is renamed to its target when complete.
#pragma once

#include <filesystem>

#include "host/base/PartFiles.h"

namespace vblur::host {

class OutputFileCommit {
 public:
  // Picks the temporary name, in the folder of the target or of the file that its links lead to.
  explicit OutputFileCommit(const std::filesystem::path& target);
  // Removes the temporary file unless committed.
  ~OutputFileCommit();
  OutputFileCommit(const OutputFileCommit&) = delete;
  OutputFileCommit& operator=(const OutputFileCommit&) = delete;

  const std::filesystem::path& WrittenPath() const { return written_; }
  // Puts what was written on the disk; Commit then does so with the name. Throws Failure (cannot write).
  void Sync();
  // Renames the file to the target, with the permissions of the file that it replaces. Throws Failure (cannot write).
  void Commit();

 private:
  std::filesystem::path target_;
  std::filesystem::path written_;
  PartFileNote note_;
  bool synced_ = false;
  bool committed_ = false;
};

}  // namespace vblur::host
