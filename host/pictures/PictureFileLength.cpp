#include "host/pictures/PictureFileLength.h"

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "host/base/Failure.h"
#include "host/formats/DpxHeader.h"
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

void RequireDpxLength(const std::filesystem::path& path, const DpxHeader& header, std::int64_t length) {
  const std::int64_t user = header.Whole(dpx::kUserBytes);
  if (user != dpx::kUndefined && user > 0 && std::int64_t{dpx::kHeaderBytes} + user > length) RefuseShort(path);
  constexpr std::uint32_t kRunLengths = 1;
  if (header.Half(dpx::kEncoding) == kRunLengths) return;
  const std::int64_t line = DpxLineBytes(header.Whole(dpx::kWidth), header.Byte(dpx::kDescriptor),
                                         header.Byte(dpx::kBits), header.Half(dpx::kPacking));
  if (line > 0 && (length - header.Begin()) / line < header.Whole(dpx::kHeight)) RefuseShort(path);
}

}  // namespace

void RequireLength(const std::filesystem::path& path, const std::filesystem::path& file) {
  std::error_code error;
  const auto length = static_cast<std::int64_t>(std::filesystem::file_size(file, error));
  std::ifstream stream(file, std::ios::binary);
  if (ReadAt(stream, 0, 4) == "\x76\x2f\x31\x01" && !IsSoundExrHeader(stream, length)) RefuseShort(path);
  if (const auto header = DpxHeader::Of(file)) RequireDpxLength(path, *header, length);
}

}  // namespace vblur::host
