// A file that the light library writes.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "host/files/PictureFile.h"

namespace vblur::host {

// Keeps the first system error. Once `stop` holds nothing more is written, and no error is reported.
class WrittenFile {
 public:
  // `stop` is borrowed.
  WrittenFile(const std::filesystem::path& path, const StopTest& stop);
  ~WrittenFile() { Close(); }
  WrittenFile(const WrittenFile&) = delete;
  WrittenFile& operator=(const WrittenFile&) = delete;

  void Put(const unsigned char* bytes, std::size_t count);
  // The place of the next byte, from the beginning of the file.
  void Seek(std::uint64_t place);
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
