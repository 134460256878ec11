#include "host/light/tiff/TiffReading.h"

#include <utility>

#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/light/tiff/TiffInput.h"

namespace vblur::host {

namespace {

PictureInfo Describe(const std::filesystem::path& path, const PlainTiff& tiff, const ReadChoice& choice) {
  const StoredType type{tiff.isFloat ? NumberKind::Float : NumberKind::Unsigned, tiff.bits / 8, tiff.bits};
  PictureInfo info = DescribeLight(path, "tiff", {tiff.width, tiff.height, tiff.channels, type}, choice);
  if (tiff.isFloat) info.transfer = Transfer::Linear;
  info.unread = tiff.unread;
  info.tileWidth = tiff.tileWidth;
  info.tileHeight = tiff.tileHeight;
  return info;
}

}  // namespace

OpenedLight OpenTiff(const std::filesystem::path& path, const ReadChoice& choice) {
  auto file = TiffInput::Open(FileToOpen(path));
  if (!file) return {};
  const PlainTiff& tiff = file->Facts();
  RequirePixels(path, tiff.width, tiff.height, tiff.channels, "", choice.mostPixels);
  PictureInfo info = Describe(path, tiff, choice);
  const bool isAssociated = tiff.associatedAlpha;
  return {std::move(file), std::move(info), isAssociated};
}

}  // namespace vblur::host
