// A file that is written beside its target and takes the target's name when it is complete.
#pragma once

#include <filesystem>

namespace vblur::host {

class OutputFileCommit {
 public:
  // Picks the name to write to: in the target's folder, or in that of the file that the target links to.
  explicit OutputFileCommit(const std::filesystem::path& target);
  // Removes what was written unless it took the target's name.
  ~OutputFileCommit();
  OutputFileCommit(const OutputFileCommit&) = delete;
  OutputFileCommit& operator=(const OutputFileCommit&) = delete;

  const std::filesystem::path& writtenPath() const { return written_; }
  // Gives the file the target's name and, where a file stood there, that file's permissions. Throws
  // Failure (cannot write).
  void Commit();

 private:
  std::filesystem::path target_;
  std::filesystem::path written_;
  bool committed_ = false;
};

}  // namespace vblur::host
