#include "host/light/jpeg/JpegReading.h"

#include <string>
#include <utility>
#include <vector>

#include "host/files/PictureChannels.h"
#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/formats/ExifBlock.h"
#include "host/light/jpeg/JpegInput.h"

namespace vblur::host {

namespace {

PictureInfo Describe(const std::filesystem::path& path, const JpegInput& jpeg, const ReadChoice& choice) {
  const std::vector<std::string> names =
      jpeg.Channels() == 1 ? std::vector<std::string>{"Y"} : std::vector<std::string>{"R", "G", "B"};
  PictureInfo info;
  info.format = "jpeg";
  info.choice = ChooseChannels(path, names, -1, choice);
  info.data = info.display = {0, 0, jpeg.Width(), jpeg.Height()};
  info.width = jpeg.Width();
  info.height = jpeg.Height();
  for (const std::string& name : names)
    info.all.push_back({name, {NumberKind::Unsigned, 1, 8}});
  DescribeChannels(info);
  if (FactsOfExif(jpeg.Exif()).mayPass) info.exif = jpeg.Exif();
  return info;
}

}  // namespace

OpenedLight OpenJpeg(const std::filesystem::path& path, const ReadChoice& choice) {
  auto file = JpegInput::Open(FileToOpen(path));
  if (!file) return {};
  RequirePixels(path, file->Width(), file->Height(), file->Channels(), "", choice.mostPixels);
  if (!file->Start()) return {};
  PictureInfo info = Describe(path, *file, choice);
  // It has a channel that the effect does not take: the full library keeps it.
  if (choice.keepsPassing && !info.passing.empty()) return {};
  return {std::move(file), std::move(info), false};
}

}  // namespace vblur::host
