#include "host/files/PictureFile.h"

#include <new>

#include "host/base/Failure.h"
#include "host/files/PictureLibrary.h"

namespace vblur::host {

ReadPicture PictureReader::Read(const std::filesystem::path& path, std::int32_t depth, std::int32_t components,
                                HostImage& into) {
  RequirePictureFile(path);
  const auto source = ThePictureLibrary().Open(path);
  const PictureInfo& info = source->Info();
  const auto width = static_cast<std::size_t>(info.width);
  const std::size_t rowBytes = width * static_cast<std::size_t>(info.channels) * SampleBytes(info.samples);
  try {
    into.Reset(depth, components, info.width, info.height);
    samples_.resize(rowBytes * static_cast<std::size_t>(info.height));
  } catch (const std::bad_alloc&) {
    RefuseToRead(
        path, "not enough memory for " + std::to_string(info.width) + " x " + std::to_string(info.height) + " pixels");
  }
  source->ReadSamples(samples_.data(), stop_);
  for (std::int32_t y = 0; y < info.height; ++y) {
    const std::byte* row = samples_.data() + rowBytes * static_cast<std::size_t>(info.height - 1 - y);
    if (components == 1) {
      ReadMaskRow(row, info.samples, info.channels, 0, depth, into.Row(y), width);
    } else {
      ReadColourRow(row, info.samples, info.channels, info.choice, depth, into.Row(y), width);
    }
  }
  return source->Facts();
}

ReadPicture PictureReader::ReadColour(const std::filesystem::path& path, std::int32_t depth, HostImage& into) {
  return Read(path, depth, 4, into);
}

ReadPicture PictureReader::ReadMask(const std::filesystem::path& path, std::int32_t depth, HostImage& into) {
  return Read(path, depth, 1, into);
}

}  // namespace vblur::host
