// Writes picture files atomically: into a temporary file in the same folder, which is renamed when complete. "-" is the
// standard output, which gets the picture when it is complete.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/files/OutputFormat.h"
#include "host/files/PictureFile.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// Throws Failure (cannot write) when the file cannot be written: its folder is missing, the name is taken by
// something other than a file, by a file while `overwrite` is not set (FailureKind::FileExists), or by a read-only one,
// or the standard output is a terminal.
void RequireWritable(const std::filesystem::path& path, bool overwrite);

class OutputFileCommit;
class RowProgress;
class UnnamedFile;

// A complete picture in a temporary file, which is removed unless committed.
class WrittenPicture {
 public:
  WrittenPicture(std::filesystem::path path, bool overwrite);
  ~WrittenPicture();
  WrittenPicture(WrittenPicture&&) noexcept;
  WrittenPicture& operator=(WrittenPicture&&) noexcept;

  const std::filesystem::path& WrittenPath() const;
  // What the file loses of the source picture, a line each, the same for pictures of the same kind; then what is
  // clipped of this picture, in a line that begins with the file.
  const std::vector<std::string>& Notes() const { return notes_; }
  // Throws Failure (cannot write), also when the target has become unwritable.
  void Commit();

 private:
  std::filesystem::path path_;
  bool overwrite_;
  std::unique_ptr<OutputFileCommit> file_;  // null for the standard output
  std::unique_ptr<UnnamedFile> toSend_;     // null for a file
  std::vector<std::string> notes_;

  friend class PictureWriter;
};

// The part of a picture that was rendered, in its pixels from the lower left corner; the pixels around it are written
// as the samples of the source, which has the size of the picture.
struct RenderedPart {
  Region region;
  FileSamples source;
};

struct OutputOptions {
  bool overwrite = false;
  // Whether the file is on its disk before it takes its name, and its name after that.
  bool sync = true;
  OutputStorage storage{};
  std::optional<RenderedPart> part{};     // nothing: all of it
  std::int32_t threads = 1;               // that may pack a large file
  const RowProgress* rendered = nullptr;  // of a picture that is rendered meanwhile
};

class PictureWriter {
 public:
  explicit PictureWriter(StopTest stop = {}) : stop_(std::move(stop)) {}

  // Writes a four-component picture. What the source picture was, the file is: grey or colour, with alpha or without,
  // of the same type, as far as its format holds that; then the nearest that it holds. `metadata` is that of the
  // source, or null: then the file has colour, alpha where its format has it, and samples of the picture's depth.
  // Throws Failure (cannot write) or FileInterrupted, and leaves no file then.
  void Write(const std::filesystem::path& path, const HostImage& image, const PictureMetadata* metadata,
             bool overwrite) {
    WriteBeside(path, image, metadata, {.overwrite = overwrite}).Commit();
  }
  // Write without the final rename, which the caller does.
  WrittenPicture WriteBeside(const std::filesystem::path& path, const HostImage& image, const PictureMetadata* metadata,
                             const OutputOptions& options);

 private:
  StopTest stop_;
};

}  // namespace vblur::host
