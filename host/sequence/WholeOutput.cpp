#include "host/sequence/WholeOutput.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <string_view>

#include "host/base/Failure.h"
#include "host/hosted/HostImage.h"

namespace vblur::host {

namespace {

std::string SizeText(const std::array<std::int32_t, 2>& size) {
  return std::to_string(size[0]) + " x " + std::to_string(size[1]);
}

std::string LastBytes(const std::filesystem::path& file, std::size_t count) {
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(-static_cast<std::streamoff>(count), std::ios::end);
  std::string bytes(count, '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(count));
  return bytes;
}

// Readers of these formats do not miss the end of a file.
bool HasEnd(const std::filesystem::path& file, std::string_view format) {
  constexpr std::string_view kPngEnd("\0\0\0\0IEND\xae\x42\x60\x82", 12);
  constexpr std::string_view kTargaEnd("TRUEVISION-XFILE.\0", 18);
  const std::string_view end = format == "png" ? kPngEnd : format == "targa" ? kTargaEnd : std::string_view();
  return end.empty() || LastBytes(file, end.size()) == end;
}

}  // namespace

std::string FlawOfOutput(const std::filesystem::path& file, const OutputFormat& format,
                         const std::vector<std::array<std::int32_t, 2>>& sizes, const StopTest& stop) {
  HostImage image;
  std::string found;
  try {
    found = PictureReader(stop).ReadColour(file, 8, image).info.format;
  } catch (const Failure& failure) {
    return failure.what();
  } catch (const std::bad_alloc&) {
    return file.string() + ": not enough memory to read it";
  }
  const std::string expected(format.name);
  if (found != expected) return file.string() + ": the format is " + found + ", expected " + expected;
  if (!HasEnd(file, found)) return file.string() + ": the end of the file is missing";
  const std::array size{image.Width(), image.Height()};
  if (sizes.empty() || std::ranges::find(sizes, size) != sizes.end()) return {};
  return file.string() + ": " + SizeText(size) + " pixels, where the frame has " + SizeText(sizes.front());
}

}  // namespace vblur::host
