#include "host/pictures/OutputFileStream.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace vblur::host {

OutputFileStream::OutputFileStream(const std::filesystem::path& path, const StopTest& stop)
    : IOProxy(path.string(), Write), stop_(stop) {
  file_ = std::fopen(path.c_str(), "w+b");
  Note(file_ == nullptr);
  if (!file_) m_mode = Closed;
}

OutputFileStream::~OutputFileStream() {
  OutputFileStream::close();
}

void OutputFileStream::Note(bool failed) const {
  if (failed && systemError_ == 0) systemError_ = errno != 0 ? errno : EIO;
}

void OutputFileStream::close() {
  PutHead();
  if (file_) Note(std::fclose(file_) != 0);
  file_ = nullptr;
  m_mode = Closed;
}

int64_t OutputFileStream::tell() {
  return file_ ? ftello(file_) + static_cast<int64_t>(head_.size()) : 0;
}

bool OutputFileStream::seek(int64_t offset) {
  PutHead();
  if (!file_ || fseeko(file_, offset, SEEK_SET) != 0) {
    Note(true);
    return false;
  }
  return true;
}

size_t OutputFileStream::read(void* buffer, size_t size) {
  return file_ ? std::fread(buffer, 1, size, file_) : 0;
}

void OutputFileStream::ChangeHead(size_t bytes, HeadChange change) {
  headBytes_ = bytes;
  headChange_ = std::move(change);
}

void OutputFileStream::PutHead() {
  const HeadChange change = std::exchange(headChange_, nullptr);
  if (!change) return;
  const std::string head = change(std::exchange(head_, {}));
  Put(head.data(), head.size());
}

size_t OutputFileStream::write(const void* buffer, size_t size) {
  const char* const bytes = static_cast<const char*>(buffer);
  size_t held = 0;
  if (headChange_) {
    held = std::min(size, headBytes_ - head_.size());
    head_.append(bytes, held);
    if (head_.size() == headBytes_) PutHead();
  }
  Put(bytes + held, size - held);
  return size;
}

void OutputFileStream::Put(const char* from, size_t size) {
  // Some writers hand over a whole picture at once.
  constexpr size_t kPiece = size_t{16} << 20;
  for (size_t left = size; left > 0 && !IsOver();) {
    const size_t piece = left < kPiece ? left : kPiece;
    Note(!file_ || std::fwrite(from, 1, piece, file_) != piece);
    from += piece;
    left -= piece;
  }
}

size_t OutputFileStream::size() const {
  flush();
  std::error_code error;
  const auto bytes = std::filesystem::file_size(m_filename, error);
  return error ? 0 : static_cast<size_t>(bytes);
}

void OutputFileStream::flush() const {
  if (file_) Note(std::fflush(file_) != 0);
}

}  // namespace vblur::host
