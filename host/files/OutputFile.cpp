#include "host/files/OutputFile.h"

#include <new>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/OutputFileCommit.h"
#include "host/base/RealPaths.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"
#include "host/files/PictureLibrary.h"
#include "host/files/StandardOutput.h"

namespace vblur::host {

void RequireWritable(const std::filesystem::path& path, bool overwrite) {
  if (IsStandardStream(path)) return RequirePictureOutput();
  if (const std::string flaw = FlawOfName(path); !flaw.empty()) RefuseToWrite(path, flaw);
  std::error_code error;
  const auto real = ExtendedPath(EndOfLinks(path));
  const auto folder = real.parent_path().empty() ? std::filesystem::path(".") : real.parent_path();
  if (!std::filesystem::is_directory(folder, error))
    RefuseToWrite(path, "the folder " + Utf8Of(folder) + " does not exist");
  const auto status = std::filesystem::status(ExtendedPath(path), error);
  if (error && std::filesystem::is_symlink(real)) RefuseToWrite(path, "its links lead in a circle");
  if (!std::filesystem::exists(status)) return;
  if (std::filesystem::is_directory(status)) RefuseToWrite(path, "it is a folder, a file name was expected");
  if (!std::filesystem::is_regular_file(status))
    RefuseToWrite(path, "not a regular file; - writes a picture into a pipe");
  if (!overwrite) {
    throw Failure(ExitCode::CannotWrite, Utf8Of(path) + ": cannot write: the file exists already",
                  FailureKind::FileExists);
  }
  // Renaming another file over it would not ask.
  using enum std::filesystem::perms;
  if ((status.permissions() & (owner_write | group_write | others_write)) == none)
    RefuseToWrite(path, "the file is read-only");
}

WrittenPicture::WrittenPicture(std::filesystem::path path, bool overwrite)
    : path_(std::move(path)), overwrite_(overwrite) {
  if (IsStandardStream(path_)) {
    toSend_ = MakeFileForOutput();
  } else {
    file_ = std::make_unique<OutputFileCommit>(path_);
  }
}
WrittenPicture::~WrittenPicture() = default;
WrittenPicture::WrittenPicture(WrittenPicture&&) noexcept = default;
WrittenPicture& WrittenPicture::operator=(WrittenPicture&&) noexcept = default;

const std::filesystem::path& WrittenPicture::WrittenPath() const {
  return toSend_ ? toSend_->Path() : file_->WrittenPath();
}

void WrittenPicture::Commit() {
  RequireWritable(path_, overwrite_);
  if (toSend_) return SendToStandardOutput(*toSend_);
  file_->Commit();
}

WrittenPicture PictureWriter::WriteBeside(const std::filesystem::path& path, const HostImage& image,
                                          const PictureMetadata* metadata, const OutputOptions& options) {
  const OutputFormat& format = OutputFormatOf(path, options.storage);
  RequireWritable(path, options.overwrite);
  WrittenPicture written(path, options.overwrite);
  const PictureToWrite picture{path,
                               written.WrittenPath(),
                               format,
                               image,
                               metadata,
                               options.storage,
                               options.part ? &*options.part : nullptr,
                               options.threads,
                               options.rendered};
  try {
    written.notes_ = ThePictureLibrary().Write(picture, stop_);
  } catch (const std::bad_alloc&) {
    RefuseToWrite(path, "not enough memory");
  }
  if (stop_ && stop_()) throw FileInterrupted{};
  if (options.sync && written.file_) written.file_->Sync();
  return written;
}

}  // namespace vblur::host
