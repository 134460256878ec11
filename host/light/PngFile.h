// A PNG file that is written.
#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>

#include "host/files/PictureFile.h"

namespace vblur::host {

// Keeps the first system error. Once `stop` holds nothing more is written, and no error is reported.
class PngFile {
 public:
  // `stop` is borrowed.
  PngFile(const std::filesystem::path& path, const StopTest& stop);
  ~PngFile() { Close(); }
  PngFile(const PngFile&) = delete;
  PngFile& operator=(const PngFile&) = delete;

  void Put(const unsigned char* bytes, std::size_t count);
  void Close();
  // 0, or the system's number of the first error.
  int SystemError() const { return systemError_; }

 private:
  void Note(bool failed);

  const StopTest& stop_;
  std::FILE* file_;
  int systemError_ = 0;
};

}  // namespace vblur::host
