// The output stream for the picture library. Keeps the first system error and hides it from the format libraries: some
// lose it, and one exits the process.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
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

  // Has the first bytes that the library writes changed, as many as these or all of a shorter file. Places behind them
  // are then those of the library's own bytes no more: for formats that are written in one go.
  using HeadChange = std::function<std::string(std::string)>;
  void ChangeHead(size_t bytes, HeadChange change);

  // 0, or the system's number of the first error.
  int SystemError() const { return systemError_; }

 private:
  void Note(bool failed) const;
  void Put(const char* from, size_t size);
  void PutHead();
  bool IsOver() const { return systemError_ != 0 || (stop_ && stop_()); }

  const StopTest& stop_;
  std::FILE* file_ = nullptr;
  HeadChange headChange_;
  size_t headBytes_ = 0;
  std::string head_;
  mutable int systemError_ = 0;
};

}  // namespace vblur::host
