// Writes picture files atomically: into a temporary file in the same folder, which is renamed when complete.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/PictureFile.h"

namespace vblur::host {

// An output file format and what its files hold.
struct OutputFormat {
  std::string_view name;        // the picture library's name
  std::string_view extensions;  // in lower case, separated by spaces
  bool hasAlpha;
  SampleKind samples8;      // of a picture of 8 bits a component
  SampleKind samples16;     // of one of 16 bits
  bool isFloat;             // 8-bit pictures become 16-bit floats
  std::int32_t mostPixels;  // along each side

  SampleKind SamplesAt(std::int32_t depth) const { return depth == 8 ? samples8 : samples16; }
};

// The format for a file name's extension. Throws Failure (wrong usage) with the list of known extensions.
const OutputFormat& OutputFormatOf(const std::filesystem::path& path);

// Throws Failure (cannot write) when the file cannot be written: its folder is missing, the name is taken by
// something other than a file, or by a file while `overwrite` is not set (FailureKind::FileExists).
void RequireWritable(const std::filesystem::path& path, bool overwrite);

class OutputFileCommit;

// A complete picture in a temporary file, which is removed unless committed.
class WrittenPicture {
 public:
  WrittenPicture(std::filesystem::path path, bool overwrite);
  ~WrittenPicture();
  WrittenPicture(WrittenPicture&&) noexcept;
  WrittenPicture& operator=(WrittenPicture&&) noexcept;

  const std::filesystem::path& WrittenPath() const;
  // Throws Failure (cannot write), also when the target has become unwritable.
  void Commit();

 private:
  std::filesystem::path path_;
  bool overwrite_;
  std::unique_ptr<OutputFileCommit> file_;
};

class PictureWriter {
 public:
  explicit PictureWriter(StopTest stop = {}) : stop_(std::move(stop)) {}

  // Writes a four-component picture. 8-bit pictures become 8-bit samples (16-bit floats in a format of
  // floats), 16-bit ones 16-bit samples or 32-bit floats, or 8-bit samples where a format has no others.
  // A format without alpha drops it. `metadata` is that of the source picture, or null. Throws Failure (cannot write)
  // or FileInterrupted, and leaves no file then.
  void Write(const std::filesystem::path& path, const HostImage& image, const PictureMetadata* metadata,
             bool overwrite) {
    WriteBeside(path, image, metadata, overwrite).Commit();
  }
  // Write without the final rename, which the caller does.
  WrittenPicture WriteBeside(const std::filesystem::path& path, const HostImage& image, const PictureMetadata* metadata,
                             bool overwrite);

 private:
  StopTest stop_;
  std::vector<std::byte> samples_;
};

}  // namespace vblur::host
