#include "host/light/openexr/ExrReading.h"

#include <string>
#include <utility>
#include <vector>

#include "host/files/PictureChannels.h"
#include "host/files/StandardInput.h"
#include "host/light/openexr/ExrInput.h"

namespace vblur::host {

namespace {

PictureInfo Describe(const std::filesystem::path& path, const ExrInput& exr, const ReadChoice& choice) {
  std::vector<std::string> names;
  for (const FileChannel& channel : exr.Channels())
    names.push_back(channel.name);
  const bool hasAlpha = names.back() == "A";
  PictureInfo info;
  info.format = "openexr";
  info.choice = ChooseChannels(path, names, hasAlpha ? static_cast<int>(names.size()) - 1 : -1, choice);
  info.data = exr.Data();
  info.display = exr.Display();
  info.width = info.Picture().width;
  info.height = info.Picture().height;
  info.all = exr.Channels();
  info.tileWidth = exr.TileWidth();
  info.tileHeight = exr.TileHeight();
  DescribeChannels(info);
  info.transfer = Transfer::Linear;
  return info;
}

}  // namespace

OpenedLight OpenExr(const std::filesystem::path& path, const ReadChoice& choice) {
  auto file = ExrInput::Open(FileToOpen(path), choice.mostPixels);
  if (!file) return {};
  PictureInfo info = Describe(path, *file, choice);
  const bool hasAlpha = file->Channels().back().name == "A";
  return {std::move(file), std::move(info), hasAlpha};
}

}  // namespace vblur::host
