#include "host/pictures/PictureFileLength.h"

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "host/base/Failure.h"
#include "host/formats/ExrHeader.h"
#include "host/formats/FileBytes.h"

namespace vblur::host {

namespace {

[[noreturn]] void RefuseShort(const std::filesystem::path& path) {
  RefuseToRead(path, "the picture is damaged or cut short (its header says more than the file holds)");
}

// Of the first image element, which the reader fills without looking whether the file still has bytes. Lines begin at
// whole words of 32 bits. 0 for what the reader checks itself.
std::int64_t DpxLineBytes(std::int64_t width, std::int64_t descriptor, std::int64_t bits, std::int64_t packing) {
  const std::int64_t components = descriptor >= 1 && descriptor <= 9      ? 1
                                  : descriptor == 50 || descriptor == 102 ? 3
                                  : descriptor == 51 || descriptor == 52  ? 4
                                                                          : 0;
  const std::int64_t samples = width * components;
  constexpr std::int64_t kWord = 32;
  if (bits != 10 && bits != 12) return 0;
  if (packing == 0) return (samples * bits + kWord - 1) / kWord * 4;
  return bits == 10 ? (samples + 2) / 3 * 4 : samples * 2;
}

void RequireDpxLength(const std::filesystem::path& path, std::string_view head, std::int64_t length) {
  const bool isBig = head[0] == 'S';
  const auto word = [&](std::size_t at) { return isBig ? Big32(head, at) : Little32(head, at); };
  const auto half = [&](std::size_t at) { return isBig ? Big16(head, at) : Little16(head, at); };
  constexpr std::int64_t kUndefined = 0xffffffff;
  constexpr std::int64_t kUserData = 2048;
  if (word(32) != kUndefined && word(32) > 0 && kUserData + word(32) > length) RefuseShort(path);
  constexpr std::int64_t kRunLengths = 1;
  if (half(806) == kRunLengths) return;
  const std::int64_t line = DpxLineBytes(word(772), Byte(head, 800), Byte(head, 803), half(804));
  // An element without a place of its own begins where the picture does.
  const std::int64_t begin = word(808) == 0 || word(808) == kUndefined ? word(4) : word(808);
  if (line > 0 && (length - begin) / line < word(776)) RefuseShort(path);
}

}  // namespace

void RequireLength(const std::filesystem::path& path, const std::filesystem::path& file) {
  constexpr std::size_t kDpxHeader = 852;
  std::error_code error;
  const auto length = static_cast<std::int64_t>(std::filesystem::file_size(file, error));
  std::ifstream stream(file, std::ios::binary);
  std::string head(kDpxHeader, '\0');
  stream.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(stream.gcount()));
  stream.clear();
  if (head.starts_with("\x76\x2f\x31\x01") && !IsSoundExrHeader(stream, length)) RefuseShort(path);
  if (head.size() == kDpxHeader && (head.starts_with("SDPX") || head.starts_with("XPDS"))) {
    RequireDpxLength(path, head, length);
  }
}

}  // namespace vblur::host
