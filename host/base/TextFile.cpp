#include "host/base/TextFile.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string_view>
#include <system_error>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"

namespace vblur::host {

std::string ReadTextFile(const std::filesystem::path& named, const std::string& kind) {
  const std::filesystem::path path = IsStandardStream(named) ? "/dev/stdin" : named;
  constexpr std::size_t kLargest = std::size_t{16} << 20;
  const auto fail = [&](const std::string& reason) { Refuse(ExitCode::CannotRead, path.string(), reason); };
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) fail("is a directory, expected a " + kind);
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) fail("cannot read the " + kind + ": " + std::strerror(errno));
  std::string text;
  std::array<char, 65536> part;
  while (file.read(part.data(), part.size()) || file.gcount() > 0) {
    text.append(part.data(), static_cast<std::size_t>(file.gcount()));
    if (text.size() > kLargest) fail("larger than 16 MiB, expected a " + kind);
  }
  if (file.bad()) fail("cannot read the " + kind + ": the system reports an error");
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  return text;
}

std::unique_ptr<OutputFileCommit> WriteTextBeside(const std::string& text, const std::filesystem::path& path,
                                                  const std::string& kind) {
  const auto fail = [&] {
    const std::string reason = errno == 0 ? "the system reports an error" : std::strerror(errno);
    Refuse(ExitCode::CannotWrite, path.string(), "cannot write the " + kind + ": " + reason);
  };
  auto commit = std::make_unique<OutputFileCommit>(path);
  errno = 0;
  std::ofstream file(commit->WrittenPath(), std::ios::binary);
  if (!file) fail();
  file << text;
  file.close();
  if (!file) fail();
  commit->Sync();
  return commit;
}

}  // namespace vblur::host
