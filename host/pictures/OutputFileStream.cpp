#include "host/pictures/OutputFileStream.h"

#include <cerrno>
#include <system_error>

namespace vblur::host {

OutputFileStream::OutputFileStream(const std::filesystem::path& path) : IOProxy(path.string(), Write) {
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
  if (file_) Note(std::fclose(file_) != 0);
  file_ = nullptr;
  m_mode = Closed;
}

int64_t OutputFileStream::tell() {
  return file_ ? ftello(file_) : 0;
}

bool OutputFileStream::seek(int64_t offset) {
  if (!file_ || fseeko(file_, offset, SEEK_SET) != 0) {
    Note(true);
    return false;
  }
  return true;
}

size_t OutputFileStream::read(void* buffer, size_t size) {
  return file_ ? std::fread(buffer, 1, size, file_) : 0;
}

size_t OutputFileStream::write(const void* buffer, size_t size) {
  // An empty write may pass a null pointer.
  if (systemError_ == 0 && size > 0) Note(!file_ || std::fwrite(buffer, 1, size, file_) != size);
  return size;
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
