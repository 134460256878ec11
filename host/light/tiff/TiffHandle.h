// A TIFF file in the hands of libtiff, which tells nobody of what is wrong with it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include <tiffio.h>

#include "host/light/WrittenFile.h"

namespace vblur::host {

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

// Opens a file for reading. Null where it is none.
TiffHandle OpenTiffFile(const std::filesystem::path& file);

// A file that is written. The handle is closed before this ends.
class TiffTarget {
 public:
  virtual ~TiffTarget() = default;
  // Null for want of memory.
  TiffHandle Open();

 private:
  static tmsize_t Read(thandle_t self, void* bytes, tmsize_t count);
  static tmsize_t Write(thandle_t self, void* bytes, tmsize_t count);
  static toff_t Seek(thandle_t self, toff_t place, int from);
  static toff_t Size(thandle_t self);
  static int Close(thandle_t self);

  virtual void Put(std::uint64_t place, const void* bytes, std::size_t count) = 0;

  std::uint64_t place_ = 0;
  std::uint64_t size_ = 0;
};

class TiffMemory final : public TiffTarget {
 public:
  const std::string& Bytes() const { return bytes_; }

 private:
  void Put(std::uint64_t place, const void* bytes, std::size_t count) override;

  std::string bytes_;
};

// What fails is told by the file (WrittenFile::Require), which is borrowed.
class TiffOnDisk final : public TiffTarget {
 public:
  explicit TiffOnDisk(WrittenFile& file) : file_(file) {}

 private:
  void Put(std::uint64_t place, const void* bytes, std::size_t count) override;

  WrittenFile& file_;
  std::uint64_t next_ = 0;
};

}  // namespace vblur::host
