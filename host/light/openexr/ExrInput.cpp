#include "host/light/openexr/ExrInput.h"

#include <algorithm>
#include <exception>
#include <istream>
#include <limits>
#include <optional>
#include <string_view>
#include <thread>

#include <ImfChannelList.h>
#include <ImfHeader.h>
#include <ImfPartType.h>
#include <ImfTileDescription.h>
#include <ImfVersion.h>

#include "host/formats/ExrHeader.h"
#include "host/formats/FileBytes.h"
#include "host/light/openexr/ExrAttributes.h"
#include "host/light/openexr/ExrPacking.h"
#include "host/light/openexr/ExrThreads.h"

namespace vblur::host {

namespace {

// A file of version 2 with one part of scan lines or tiles, whose header does not ask for more than the file can hold.
bool IsOfOnePart(std::istream& file) {
  constexpr std::size_t kVersionEnd = 8;
  constexpr std::string_view kMagic = "\x76\x2f\x31\x01";
  constexpr std::int64_t kVersion = 2;
  constexpr std::int64_t kTiles = 0x200;
  constexpr std::int64_t kLongNames = 0x400;
  const std::int64_t length = file.seekg(0, std::ios::end).tellg();
  std::string head(kVersionEnd, '\0');
  file.seekg(0);
  if (!file.read(head.data(), static_cast<std::streamsize>(head.size())) || !head.starts_with(kMagic)) return false;
  return (Little32(head, 4) & ~(kTiles | kLongNames)) == kVersion && IsSoundExrHeader(file, length);
}

std::optional<FileWindow> WindowOf(const Imath::Box2i& box) {
  constexpr std::int64_t kMostPixels = 1 << 20;
  const std::int64_t width = std::int64_t{box.max.x} - box.min.x + 1;
  const std::int64_t height = std::int64_t{box.max.y} - box.min.y + 1;
  if (width < 1 || height < 1 || width > kMostPixels || height > kMostPixels) return std::nullopt;
  // Far away from the origin the numbers end.
  constexpr std::int64_t kFarthest = 1 << 28;
  const auto isNear = [](std::int64_t place) { return place > -kFarthest && place < kFarthest; };
  if (!isNear(box.min.x) || !isNear(box.min.y)) return std::nullopt;
  return FileWindow{box.min.x, box.min.y, static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
}

std::optional<FileChannel> ChannelOf(const Imf::Header& header, const char* name) {
  const Imf::Channel* const found = header.channels().findChannel(name);
  if (found == nullptr || found->xSampling != 1 || found->ySampling != 1) return std::nullopt;
  if (found->type != Imf::HALF && found->type != Imf::FLOAT) return std::nullopt;
  const std::int32_t bytes = found->type == Imf::HALF ? 2 : 4;
  return FileChannel{name, {NumberKind::Float, bytes, 8 * bytes}};
}

}  // namespace

std::unique_ptr<ExrInput> ExrInput::Open(const std::filesystem::path& file, std::int64_t mostPixels) {
  std::unique_ptr<ExrInput> input(new ExrInput(file));
  try {
    if (!IsOfOnePart(input->file_) || !input->ReadHeader(mostPixels)) return nullptr;
  } catch (const std::exception&) {
    return nullptr;
  }
  return input;
}

bool ExrInput::TakeWindows(const Imf::Header& header, std::int64_t mostPixels) {
  const auto data = WindowOf(header.dataWindow());
  const auto display = WindowOf(header.displayWindow());
  if (!data || !display) return false;
  data_ = *data;
  display_ = *display;
  const std::int64_t width = std::max(data->Right(), display->Right()) - std::min(data->x, display->x);
  const std::int64_t height = std::max(data->Bottom(), display->Bottom()) - std::min(data->y, display->y);
  // Four components each, whose number has 31 bits.
  constexpr std::int64_t kMostPixels = std::numeric_limits<std::int32_t>::max() / 4;
  return width <= std::min(kMostPixels, mostPixels) / height;
}

bool ExrInput::TakeChannels(const Imf::Header& header) {
  const bool isGrey = header.channels().findChannel("Y") != nullptr;
  const std::vector<const char*> colours = isGrey ? std::vector{"Y"} : std::vector{"R", "G", "B"};
  for (const char* const name : colours) {
    const auto channel = ChannelOf(header, name);
    if (!channel) return false;
    channels_.push_back(*channel);
  }
  if (const auto alpha = ChannelOf(header, "A")) channels_.push_back(*alpha);
  std::size_t count = 0;
  for (auto each = header.channels().begin(); each != header.channels().end(); ++each)
    ++count;
  return count == channels_.size();
}

// Of one level; none in a file of scan lines.
bool ExrInput::TakeTiles(const Imf::Header& header) {
  const bool isTiled = Imf::isTiled(parts_->version());
  if (header.hasType() && header.type() != (isTiled ? Imf::TILEDIMAGE : Imf::SCANLINEIMAGE)) return false;
  if (isTiled != header.hasTileDescription()) return false;
  if (!isTiled) return true;
  const Imf::TileDescription& tiles = header.tileDescription();
  tileWidth_ = static_cast<std::int32_t>(tiles.xSize);
  tileHeight_ = static_cast<std::int32_t>(tiles.ySize);
  return tiles.mode == Imf::ONE_LEVEL && tileWidth_ > 0 && tileHeight_ > 0;
}

void ExrInput::OpenPart(int threads) {
  part_.reset();
  parts_.reset();
  file_.clear();
  file_.seekg(0);
  parts_ = std::make_unique<Imf::MultiPartInputFile>(stream_, threads);
  if (parts_->parts() == 1) part_ = std::make_unique<Imf::InputPart>(*parts_, 0);
}

bool ExrInput::ReadHeader(std::int64_t mostPixels) {
  OpenPart(0);
  if (!part_) return false;
  const Imf::Header& header = part_->header();
  if (!TakeTiles(header) || !TakeWindows(header, mostPixels) || !TakeChannels(header)) return false;
  auto attributes = ReadExrAttributes(header);
  if (!attributes) return false;
  attributes_ = *std::move(attributes);
  const ExrRows rows{header.compression(), RowBytes(), data_.height, tileHeight_};
  threads_ = ThreadsFor(rows, static_cast<std::int32_t>(std::max(1u, std::thread::hardware_concurrency())));
  rowsAtOnce_ = vblur::host::RowsAtOnce(rows, threads_);
  return true;
}

bool ExrInput::ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) {
  const std::int32_t top = data_.y + first;
  try {
    // Only now: who looks at the header alone starts no threads.
    if (first == 0 && threads_ > 1) OpenPart(UseExrThreads(threads_));
    Imf::FrameBuffer rows;
    for (std::size_t c = 0; c < channels_.size(); ++c) {
      rows.insert(channels_[c].name, Imf::Slice::Make(Imf::FLOAT, samples + c * sizeof(float), {data_.x, top},
                                                      data_.width, count, PixelBytes(), RowBytes()));
    }
    part_->setFrameBuffer(rows);
    part_->readPixels(top, top + count - 1);
  } catch (const std::exception& error) {
    message_ = error.what();
    return false;
  }
  return true;
}

}  // namespace vblur::host
