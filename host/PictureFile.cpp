#include "host/PictureFile.h"

#include <new>

#include "host/Failure.h"
#include "host/PictureFileMetadata.h"
#include "host/PictureFileOpen.h"

namespace vblur::host {

namespace {

OIIO::TypeDesc TypeOf(SampleKind kind) {
  switch (kind) {
    case SampleKind::Unsigned8: return OIIO::TypeDesc::UINT8;
    case SampleKind::Unsigned16: return OIIO::TypeDesc::UINT16;
    case SampleKind::Float: break;
  }
  return OIIO::TypeDesc::FLOAT;
}

bool StopsReading(void* stop, float /*portion*/) {
  const auto& test = *static_cast<const StopTest*>(stop);
  return test && test();
}

// A reader that patches up a file cut short says so although it has "succeeded".
bool WasCutShort(const std::string& message) {
  return message.find("Premature end") != std::string::npos;
}

void ReadSamples(const std::filesystem::path& path, OpenPicture& picture, std::byte* samples, const StopTest& stop) {
  const PictureFileChatter chatter;
  const bool done =
      picture.file->read_image(0, 0, 0, picture.info.channels, TypeOf(picture.info.samples), samples, OIIO::AutoStride,
                               OIIO::AutoStride, OIIO::AutoStride, StopsReading, const_cast<StopTest*>(&stop));
  if (stop && stop()) throw FileInterrupted{};
  const std::string message = picture.file->geterror();
  if (done && !WasCutShort(message)) return;
  throw Failure(ExitCode::CannotRead, path.string() + ": cannot read: the picture is damaged or cut short (" +
                                          LibraryMessage(message, "its pixels end early") + ")");
}

}  // namespace

ReadPicture PictureReader::Read(const std::filesystem::path& path, std::int32_t depth, std::int32_t components,
                                HostImage& into) {
  OpenPicture picture = OpenPictureFile(path);
  const PictureInfo& info = picture.info;
  const auto width = static_cast<std::size_t>(info.width);
  const std::size_t rowBytes = width * static_cast<std::size_t>(info.channels) * SampleBytes(info.samples);
  try {
    into.Reset(depth, components, info.width, info.height);
    samples_.resize(rowBytes * static_cast<std::size_t>(info.height));
  } catch (const std::bad_alloc&) {
    throw Failure(ExitCode::CannotRead, path.string() + ": cannot read: not enough memory for " +
                                            std::to_string(info.width) + " x " + std::to_string(info.height) +
                                            " pixels");
  }
  ReadSamples(path, picture, samples_.data(), stop_);
  for (std::int32_t y = 0; y < info.height; ++y) {
    const std::byte* row = samples_.data() + rowBytes * static_cast<std::size_t>(info.height - 1 - y);
    if (components == 1) {
      ReadMaskRow(row, info.samples, info.channels, 0, depth, into.Row(y), width);
    } else {
      ReadColourRow(row, info.samples, info.channels, info.choice, depth, into.Row(y), width);
    }
  }
  auto metadata = std::make_shared<PictureMetadata>(CollectMetadata(picture.file->spec(), info.format));
  return {info, std::move(metadata)};
}

ReadPicture PictureReader::ReadColour(const std::filesystem::path& path, std::int32_t depth, HostImage& into) {
  return Read(path, depth, 4, into);
}

ReadPicture PictureReader::ReadMask(const std::filesystem::path& path, std::int32_t depth, HostImage& into) {
  return Read(path, depth, 1, into);
}

}  // namespace vblur::host
