#include "host/base/TextFile.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

#include "host/base/Descriptors.h"
#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"

namespace vblur::host {

namespace {

constexpr std::size_t kLargest = std::size_t{16} << 20;

// Reads until `text` is larger than a text may be. False with the error in errno.
bool ReadStandardInput(std::string& text) {
  std::array<char, 65536> part;
  while (text.size() <= kLargest) {
    const std::int64_t count = ReadSome(kStandardInput, part);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    text.append(part.data(), static_cast<std::size_t>(count));
  }
  return true;
}

bool ReadFile(const std::filesystem::path& path, std::string& text) {
  errno = 0;
  std::ifstream file(ExtendedPath(path), std::ios::binary);
  if (!file) return false;
  std::array<char, 65536> part;
  while (text.size() <= kLargest && (file.read(part.data(), part.size()) || file.gcount() > 0))
    text.append(part.data(), static_cast<std::size_t>(file.gcount()));
  return !file.bad();
}

// A text of Windows in UTF-16, with its byte order mark, in whose order the bytes are. Nothing where it ends in the
// middle of a character.
std::optional<std::string> OfUtf16(std::string_view bytes) {
  const bool isBig = bytes.starts_with("\xFE\xFF");
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u16string text;
  for (std::size_t at = 2; at < bytes.size(); at += 2) {
    const auto byte = [&](std::size_t which) { return static_cast<unsigned char>(bytes[at + which]); };
    text.push_back(static_cast<char16_t>(isBig ? byte(0) << 8 | byte(1) : byte(1) << 8 | byte(0)));
  }
  return Utf8Of(text);
}

// Nothing that is read holds a zero, but every letter of ASCII in UTF-16 has one.
bool IsUnmarkedUtf16(std::string_view bytes) {
  return bytes.size() >= 2 && (bytes[0] == '\0') != (bytes[1] == '\0');
}

std::string LastError() {
  // Programs may be started without a standard input.
  if (errno == EBADF) return "it is closed, or not open for reading";
  return errno == 0 ? "the system reports an error" : std::strerror(errno);
}

}  // namespace

std::string ReadTextFile(const std::filesystem::path& path, const std::string& kind) {
  const auto fail = [&](const std::string& reason) { Refuse(ExitCode::CannotRead, InputName(path), reason); };
  if (const std::string flaw = FlawOfInputName(path); !flaw.empty()) fail("cannot read the " + kind + ": " + flaw);
  std::error_code error;
  if (std::filesystem::is_directory(ExtendedPath(path), error)) fail("is a directory, expected a " + kind);
  std::string text;
  const bool isRead = IsStandardStream(path) ? ReadStandardInput(text) : ReadFile(path, text);
  if (!isRead) fail("cannot read the " + kind + ": " + LastError());
  if (text.size() > kLargest) fail("larger than 16 MiB, expected a " + kind);
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  if (IsUnmarkedUtf16(text))
    fail("a text in UTF-16 without a byte order mark, expected a " + kind + " in UTF-8, or with the mark");
  if (!text.starts_with("\xFF\xFE") && !text.starts_with("\xFE\xFF")) return text;
  const std::optional<std::string> read = OfUtf16(text);
  if (!read) fail("a text in UTF-16 that ends in the middle of a character, expected a whole " + kind);
  return *read;
}

std::unique_ptr<OutputFileCommit> WriteTextBeside(const std::string& text, const std::filesystem::path& path,
                                                  const std::string& kind) {
  auto commit = std::make_unique<OutputFileCommit>(path);
  if (const std::string error = WriteWhole(commit->WrittenPath(), text); !error.empty())
    Refuse(ExitCode::CannotWrite, Utf8Of(path), "cannot write the " + kind + ": " + error);
  commit->Sync();
  return commit;
}

}  // namespace vblur::host
