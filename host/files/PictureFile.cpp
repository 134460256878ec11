#include "host/files/PictureFile.h"

#include <algorithm>
#include <future>
#include <new>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/files/FileRows.h"
#include "host/files/PictureLibrary.h"

namespace vblur::host {

namespace {

std::vector<std::string> Losses(const std::filesystem::path& path, std::int32_t pictures, const BeyondRange& beyond,
                                std::int32_t depth) {
  std::vector<std::string> losses;
  if (pictures > 1) {
    losses.push_back(InputName(path) + ": only the first of " + std::to_string(pictures) +
                     " pictures is read; the others are not in the output");
  }
  // Floats limit so few values that a run counts them together.
  if (depth == 32) return losses;
  if (const std::string text = FormatBeyond(beyond, LimitsOf(depth)); !text.empty())
    losses.push_back(InputName(path) + ": " + text);
  return losses;
}

}  // namespace

ReadPicture PictureReader::Read(const std::filesystem::path& path, const ReadChoice& choice, std::int32_t depth,
                                HostImage& into, const ReadingWatch* watch) {
  RequirePictureFile(path);
  const auto source = ThePictureLibrary().Open(path, choice);
  const PictureInfo& info = source->Info();
  std::unique_ptr<FileRows> rows;
  std::vector<std::byte> kept;
  const bool keepsSamples = choice.KeepsSamplesOf(info, depth);
  const std::int32_t height = info.data.height;
  const std::int32_t atOnce = std::min(source->RowsAtOnce(), height);
  try {
    rows = MakeFileRows(info, choice.use, depth, into);
    for (auto& samples : samples_) {
      samples.resize(rows->RowBytes() * static_cast<std::size_t>(atOnce));
      if (atOnce == height) break;
    }
    if (keepsSamples) kept.reserve(rows->RowBytes() * static_cast<std::size_t>(height));
  } catch (const std::bad_alloc&) {
    RefuseToRead(
        path, "not enough memory for " + std::to_string(info.width) + " x " + std::to_string(info.height) + " pixels");
  }
  // Rows above the data are there, those below it only with the last.
  const bool isWatched = watch != nullptr && source->KnowsFacts();
  const auto above = static_cast<std::int32_t>(info.data.y - info.Picture().y);
  const auto put = [&](const std::byte* samples, std::int32_t first, std::int32_t count) {
    const std::size_t bytes = rows->RowBytes() * static_cast<std::size_t>(count);
    for (std::size_t row = 0; row < bytes; row += rows->RowBytes())
      rows->Put(samples + row);
    if (keepsSamples) kept.insert(kept.end(), samples, samples + bytes);
    if (isWatched) watch->onRows(first + count == height ? into.Height() : above + first + count);
  };
  if (isWatched) watch->onSize(source->Facts());
  // Rows become those of the picture while the next ones are read. Where the system allows no thread, before that.
  std::future<void> putting;
  for (std::int32_t first = 0; first < height; first += atOnce) {
    if (stop_ && stop_()) throw FileInterrupted{};
    const std::int32_t count = std::min(atOnce, height - first);
    std::byte* const samples = samples_[first / atOnce % 2].data();
    source->ReadRows(first, count, samples);
    if (putting.valid()) putting.get();
    if (first + count == height) {
      put(samples, first, count);
    } else {
      putting = std::async(std::launch::async | std::launch::deferred, put, samples, first, count);
    }
  }
  rows->Finish();
  ReadPicture read = source->Facts();
  if (keepsSamples) read.samples = std::make_shared<const std::vector<std::byte>>(std::move(kept));
  read.losses = Losses(path, info.pictures, rows->Lost(), depth);
  if (depth == 32) read.beyond = rows->Lost();
  return read;
}

ReadPicture PictureReader::ReadColour(const std::filesystem::path& path, std::int32_t depth, HostImage& into,
                                      const ReadChoice& choice, const ReadingWatch* watch) {
  ReadChoice colours = choice;
  colours.use = PictureUse::Colour;
  return Read(path, colours, depth, into, watch);
}

ReadPicture PictureReader::ReadMask(const std::filesystem::path& path, std::int32_t depth, HostImage& into,
                                    const ReadChoice& choice) {
  ReadChoice mask = choice;
  mask.use = PictureUse::Mask;
  mask.keepsPassing = false;
  mask.keepsSamples = false;
  return Read(path, mask, depth, into, nullptr);
}

}  // namespace vblur::host
