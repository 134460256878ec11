#include "host/files/StandardInput.h"

#include <cerrno>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/base/UnnamedFile.h"

namespace vblur::host {

namespace {

const std::filesystem::path kInput = "-";
constexpr std::int64_t kMostBytes = std::int64_t{2} << 30;

std::string SystemText() {
  return std::generic_category().message(errno);
}

void WriteAll(int file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(file, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) RefuseToRead(kInput, "its temporary file cannot be written: " + SystemText());
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
}

// Whether there is something to read, or the end, after a moment.
bool IsReady() {
  constexpr int kMilliseconds = 100;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return ::poll(&input, 1, kMilliseconds) != 0;
}

std::unique_ptr<UnnamedFile> MakeFile() {
  try {
    return std::make_unique<UnnamedFile>();
  } catch (const std::system_error& error) {
    RefuseToRead(kInput, error.what());
  }
}

std::unique_ptr<UnnamedFile> ReadToEnd(std::int64_t mostBytes, const StopTest& stop) {
  if (::isatty(STDIN_FILENO) != 0) RefuseToRead(kInput, "it is a terminal, a picture was expected");
  auto file = MakeFile();
  std::vector<char> part(std::size_t{1} << 16);
  for (std::int64_t bytes = 0;;) {
    if (stop && stop()) throw Failure(ExitCode::Interrupted, "interrupted");
    if (!IsReady()) continue;
    const ssize_t count = ::read(STDIN_FILENO, part.data(), part.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count < 0) RefuseToRead(kInput, SystemText());
    if (count == 0 && bytes == 0) RefuseToRead(kInput, "it is empty, a picture was expected");
    if (count == 0) return file;
    bytes += count;
    if (bytes > mostBytes) {
      throw Failure(
          ExitCode::CannotRead,
          InputName(kInput) + ": cannot read: more than the " + std::to_string(mostBytes) + " bytes that are allowed",
          FailureKind::NeedsMemory);
    }
    WriteAll(file->Descriptor(), part.data(), static_cast<std::size_t>(count));
  }
}

const UnnamedFile& TheFile(std::int64_t mostBytes, const StopTest& stop) {
  static std::mutex taking;
  static std::unique_ptr<UnnamedFile> taken;
  const std::lock_guard hold(taking);
  if (!taken) taken = ReadToEnd(mostBytes, stop);
  return *taken;
}

}  // namespace

void TakeStandardInput(std::int64_t mostBytes, const StopTest& stop) {
  TheFile(mostBytes, stop);
}

std::filesystem::path FileToOpen(const std::filesystem::path& picture) {
  return IsStandardStream(picture) ? TheFile(kMostBytes, {}).Path() : picture;
}

}  // namespace vblur::host
