#include "host/files/StandardInput.h"

#include <cerrno>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "host/base/Descriptors.h"
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

void WriteAll(int file, std::span<const char> bytes) {
  while (!bytes.empty()) {
    const std::int64_t written = WriteSome(file, bytes);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) RefuseToRead(kInput, "its temporary file cannot be written: " + SystemText());
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
}

std::unique_ptr<UnnamedFile> MakeFile() {
  try {
    return std::make_unique<UnnamedFile>();
  } catch (const std::system_error& error) {
    RefuseToRead(kInput, error.what());
  }
}

std::unique_ptr<UnnamedFile> ReadToEnd(std::int64_t mostBytes, const StopTest& stop) {
  if (IsTerminal(kStandardInput)) RefuseToRead(kInput, "it is a terminal, a picture was expected");
  auto file = MakeFile();
  std::vector<char> part(std::size_t{1} << 16);
  for (std::int64_t bytes = 0;;) {
    if (stop && stop()) throw Failure(ExitCode::Interrupted, "interrupted");
    if (!IsReady(kStandardInput)) continue;
    const std::int64_t count = ReadSome(kStandardInput, part);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count < 0 && errno == EBADF)
      RefuseToRead(kInput, "it is closed, or not open for reading; a picture was expected");
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
    WriteAll(file->Descriptor(), std::span(part).first(static_cast<std::size_t>(count)));
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
