#include "host/light/tiff/TiffReading.h"

#include <string>
#include <utility>
#include <vector>

#include "host/files/PictureChannels.h"
#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/light/tiff/TiffInput.h"

namespace vblur::host {

namespace {

std::vector<std::string> NamesOf(int channels) {
  if (channels <= 2) return channels == 1 ? std::vector<std::string>{"Y"} : std::vector<std::string>{"Y", "A"};
  std::vector<std::string> names{"R", "G", "B"};
  if (channels == 4) names.emplace_back("A");
  return names;
}

PictureInfo Describe(const std::filesystem::path& path, const PlainTiff& tiff, const ReadChoice& choice) {
  const std::vector<std::string> names = NamesOf(tiff.channels);
  const bool hasAlpha = tiff.channels % 2 == 0;
  PictureInfo info;
  info.format = "tiff";
  info.choice = ChooseChannels(path, names, hasAlpha ? tiff.channels - 1 : -1, choice);
  info.data = info.display = {0, 0, tiff.width, tiff.height};
  info.width = tiff.width;
  info.height = tiff.height;
  const NumberKind kind = tiff.isFloat ? NumberKind::Float : NumberKind::Unsigned;
  for (const std::string& name : names)
    info.all.push_back({name, {kind, tiff.bits / 8, tiff.bits}});
  DescribeChannels(info);
  if (tiff.isFloat) info.transfer = Transfer::Linear;
  info.unread = tiff.unread;
  return info;
}

}  // namespace

OpenedLight OpenTiff(const std::filesystem::path& path, const ReadChoice& choice) {
  auto file = TiffInput::Open(FileToOpen(path));
  if (!file) return {};
  const PlainTiff& tiff = file->Facts();
  RequirePixels(path, tiff.width, tiff.height, tiff.channels, "", choice.mostPixels);
  PictureInfo info = Describe(path, tiff, choice);
  // It has a channel that the effect does not take: the full library keeps it.
  if (choice.keepsPassing && !info.passing.empty()) return {};
  const bool isAssociated = tiff.associatedAlpha;
  return {std::move(file), std::move(info), isAssociated};
}

}  // namespace vblur::host
