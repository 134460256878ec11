// A file that is written beside its target and takes the target's name when it is complete.
#pragma once

#include <filesystem>
#include <string>

#include <OpenImageIO/filesystem.h>

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

// The file that a picture library writes into. It keeps the first error of the system and hides it from
// the library: some lose it, and one ends the whole program.
class OutputFileStream final : public OIIO::Filesystem::IOProxy {
 public:
  explicit OutputFileStream(const std::filesystem::path& path);
  ~OutputFileStream() override;

  // Not "file": the library takes that for its own class.
  const char* proxytype() const override { return "checked file"; }
  void close() override;
  int64_t tell() override;
  bool seek(int64_t offset) override;
  size_t read(void* buffer, size_t size) override;
  size_t write(const void* buffer, size_t size) override;
  size_t size() const override;
  void flush() const override;

  // 0, or the system's number of the first error.
  int systemError() const { return systemError_; }

 private:
  void Note(bool failed) const;

  std::FILE* file_ = nullptr;
  mutable int systemError_ = 0;
};

}  // namespace vblur::host
