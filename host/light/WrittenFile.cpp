#include "host/light/WrittenFile.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "host/base/Failure.h"

namespace vblur::host {

WrittenFile::WrittenFile(const PictureToWrite& picture, const StopTest& stop)
    : target_(picture.target), stop_(stop), file_(std::fopen(picture.file.c_str(), "wb")) {
  Note(file_ == nullptr);
  if (systemError_ != 0) RefuseToWrite(target_, std::generic_category().message(systemError_));
}

void WrittenFile::Require(bool done, const std::string& why) const {
  if (stop_ && stop_()) throw FileInterrupted{};
  if (systemError_ != 0) RefuseToWrite(target_, std::generic_category().message(systemError_));
  if (!done) RefuseToWrite(target_, why.empty() ? "writing failed" : why);
}

void WrittenFile::Note(bool failed) {
  if (failed && systemError_ == 0) systemError_ = errno != 0 ? errno : EIO;
}

void WrittenFile::Put(const unsigned char* bytes, std::size_t count) {
  if (systemError_ != 0 || (stop_ && stop_())) return;
  Note(std::fwrite(bytes, 1, count, file_) != count);
}

void WrittenFile::Seek(std::uint64_t place) {
  if (systemError_ != 0 || (stop_ && stop_())) return;
  Note(fseeko(file_, static_cast<off_t>(place), SEEK_SET) != 0);
}

void WrittenFile::Close() {
  if (std::FILE* const file = std::exchange(file_, nullptr)) Note(std::fclose(file) != 0);
}

}  // namespace vblur::host
