// A file that the light library writes.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// Keeps the first system error. Once `stop` holds nothing more is written.
class WrittenFile {
 public:
  // The file that the picture is to be written to. Both are borrowed. Throws Failure (cannot write).
  WrittenFile(const PictureToWrite& picture, const StopTest& stop);
  ~WrittenFile() { Close(); }
  WrittenFile(const WrittenFile&) = delete;
  WrittenFile& operator=(const WrittenFile&) = delete;

  void Put(const unsigned char* bytes, std::size_t count);
  // The place of the next byte, from the beginning of the file.
  void Seek(std::uint64_t place);
  void Close();
  // Throws FileInterrupted once `stop` holds, and Failure (cannot write) by the system's error, or where it has none
  // and the format's library is not `done`, by `why`; empty: it does not say.
  void Require(bool done, const std::string& why) const;

 private:
  void Note(bool failed);

  const std::filesystem::path& target_;
  const StopTest& stop_;
  std::FILE* file_;
  int systemError_ = 0;
};

}  // namespace vblur::host
