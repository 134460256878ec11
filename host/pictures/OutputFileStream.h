// The output stream for the picture library. Keeps the first system error and hides it from the format libraries: some
// lose it, and one exits the process.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include <OpenImageIO/filesystem.h>

#include "host/files/PictureFile.h"

namespace vblur::host {

class OutputFileStream final : public OIIO::Filesystem::IOProxy {
 public:
  // `stop` is borrowed; once it is true nothing more is written, and no error is reported.
  OutputFileStream(const std::filesystem::path& path, const StopTest& stop);
  ~OutputFileStream() override;

  // Not "file": the library treats that type as its own class.
  const char* proxytype() const override { return "checked file"; }
  void close() override;
  int64_t tell() override;
  bool seek(int64_t offset) override;
  size_t read(void* buffer, size_t size) override;
  size_t write(const void* buffer, size_t size) override;
  size_t size() const override;
  void flush() const override;

  // Puts bytes of the caller's at a place of the file, once the library has written up to there. Places behind it are
  // then those of the library's own bytes no more: for formats that are written in one go.
  void Insert(std::int64_t place, std::string bytes);

  // 0, or the system's number of the first error.
  int SystemError() const { return systemError_; }

 private:
  void Note(bool failed) const;
  void Put(const char* bytes, size_t size);
  bool IsOver() const { return systemError_ != 0 || (stop_ && stop_()); }

  const StopTest& stop_;
  std::FILE* file_ = nullptr;
  std::int64_t place_ = 0;
  std::string toInsert_;
  mutable int systemError_ = 0;
};

}  // namespace vblur::host
