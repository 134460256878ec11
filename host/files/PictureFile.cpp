#include "host/files/PictureFile.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/files/FileRows.h"
#include "host/files/PictureLibrary.h"

namespace vblur::host {

namespace {

std::string Components(std::int64_t count) {
  return std::to_string(count) + (count == 1 ? " component" : " components");
}

// The part of a line that says what is lost to the depth.
std::string FormatBeyond(const BeyondRange& beyond, std::int32_t depth) {
  std::string text;
  if (beyond.count > 0) {
    char range[80];
    std::snprintf(range, sizeof range, " from %.6g to %.6g", static_cast<double>(beyond.lowest),
                  static_cast<double>(beyond.highest));
    text = Components(beyond.count) + range + " clipped to " + (depth == 8 ? "0 to 1" : "-2 to 2") + ", which " +
           std::to_string(depth) + " bits carry";
  }
  if (beyond.notNumbers > 0) {
    text += (text.empty() ? "" : "; ") + Components(beyond.notNumbers) + " without a value (NaN) read as 0";
  }
  return text;
}

std::vector<std::string> Losses(const std::filesystem::path& path, std::int32_t pictures, const BeyondRange& beyond,
                                std::int32_t depth) {
  std::vector<std::string> losses;
  if (pictures > 1) {
    losses.push_back(InputName(path) + ": only the first of " + std::to_string(pictures) +
                     " pictures is read; the others are not in the output");
  }
  if (const std::string text = FormatBeyond(beyond, depth); !text.empty())
    losses.push_back(InputName(path) + ": " + text);
  return losses;
}

}  // namespace

ReadPicture PictureReader::Read(const std::filesystem::path& path, const ReadChoice& choice, std::int32_t depth,
                                HostImage& into) {
  RequirePictureFile(path);
  const auto source = ThePictureLibrary().Open(path, choice);
  const PictureInfo& info = source->Info();
  std::unique_ptr<FileRows> rows;
  const std::int32_t height = info.data.height;
  const std::int32_t atOnce = std::min(source->RowsAtOnce(), height);
  try {
    rows = MakeFileRows(info, choice.use, depth, into);
    samples_.resize(rows->RowBytes() * static_cast<std::size_t>(atOnce));
  } catch (const std::bad_alloc&) {
    RefuseToRead(
        path, "not enough memory for " + std::to_string(info.width) + " x " + std::to_string(info.height) + " pixels");
  }
  for (std::int32_t first = 0; first < height; first += atOnce) {
    if (stop_ && stop_()) throw FileInterrupted{};
    const std::int32_t count = std::min(atOnce, height - first);
    source->ReadRows(first, count, samples_.data());
    for (std::int32_t row = 0; row < count; ++row)
      rows->Put(samples_.data() + rows->RowBytes() * static_cast<std::size_t>(row));
  }
  rows->Finish();
  ReadPicture read = source->Facts();
  read.losses = Losses(path, info.pictures, rows->Lost(), depth);
  return read;
}

ReadPicture PictureReader::ReadColour(const std::filesystem::path& path, std::int32_t depth, HostImage& into,
                                      const ReadChoice& choice) {
  ReadChoice colours = choice;
  colours.use = PictureUse::Colour;
  return Read(path, colours, depth, into);
}

ReadPicture PictureReader::ReadMask(const std::filesystem::path& path, std::int32_t depth, HostImage& into,
                                    const ReadChoice& choice) {
  ReadChoice mask = choice;
  mask.use = PictureUse::Mask;
  mask.keepsPassing = false;
  return Read(path, mask, depth, into);
}

}  // namespace vblur::host
