#include "host/sequence/WholeOutput.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <set>
#include <string_view>

#include "host/base/Failure.h"
#include "host/base/Utf8.h"
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

// Another picture than the frame, whole as it may be; empty: none.
std::string DifferenceFrom(const ExpectedOutput& expected, const PictureInfo& info, const HostImage& image) {
  const std::array size{image.Width(), image.Height()};
  const auto& sizes = expected.sizes;
  if (!sizes.empty() && std::ranges::find(sizes, size) == sizes.end()) {
    return SizeText(size) + " pixels, where the frame has " + SizeText(sizes.front());
  }
  const SampleType type = TypeFor(info.stored);
  if (expected.type && type != *expected.type) {
    return "the samples are " + std::string(NameOf(type)) + ", expected " + std::string(NameOf(*expected.type));
  }
  std::set<std::string_view> names;
  for (const FileChannel& channel : info.all)
    names.insert(channel.name);
  for (const std::string& channel : expected.channels) {
    if (!names.contains(channel)) return "channel " + channel + " is missing";
  }
  return {};
}

}  // namespace

std::string FlawOfOutput(const std::filesystem::path& file, const OutputFormat& format, const ExpectedOutput& expected,
                         const StopTest& stop) {
  HostImage image;
  PictureInfo info;
  try {
    info = PictureReader(stop).ReadColour(file, 8, image).info;
  } catch (const Failure& failure) {
    return failure.what();
  } catch (const std::bad_alloc&) {
    return Utf8Of(file) + ": not enough memory to read it";
  }
  if (info.format != format.name)
    return Utf8Of(file) + ": the format is " + info.format + ", expected " + std::string(format.name);
  if (!HasEnd(file, info.format)) return Utf8Of(file) + ": the end of the file is missing";
  const std::string difference = DifferenceFrom(expected, info, image);
  return difference.empty() ? difference : Utf8Of(file) + ": " + difference;
}

}  // namespace vblur::host
