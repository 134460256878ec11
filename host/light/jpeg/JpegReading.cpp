#include "host/light/jpeg/JpegReading.h"

#include <utility>

#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/light/ExifDecoding.h"
#include "host/light/jpeg/JpegInput.h"

namespace vblur::host {

namespace {

PictureInfo Describe(const std::filesystem::path& path, const JpegInput& jpeg, const ReadChoice& choice) {
  const StoredType type{NumberKind::Unsigned, 1, 8};
  PictureInfo info = DescribeLight(path, "jpeg", {jpeg.Width(), jpeg.Height(), jpeg.Channels(), type}, choice);
  DescribeExif(jpeg.Exif(), jpeg.UnreadExif(), info);
  return info;
}

}  // namespace

OpenedLight OpenJpeg(const std::filesystem::path& path, const ReadChoice& choice) {
  auto file = JpegInput::Open(FileToOpen(path));
  if (!file) return {};
  RequirePixels(path, file->Width(), file->Height(), file->Channels(), "", choice.mostPixels);
  if (!file->Start()) return {};
  PictureInfo info = Describe(path, *file, choice);
  return {std::move(file), std::move(info), false};
}

}  // namespace vblur::host
