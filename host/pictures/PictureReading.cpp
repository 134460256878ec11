#include "host/pictures/PictureReading.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <vector>

#include "host/base/Failure.h"
#include "host/files/StandardInput.h"
#include "host/pictures/DpxSamples.h"
#include "host/pictures/PictureFileMetadata.h"
#include "host/pictures/PictureFileOpen.h"
#include "host/pictures/WhiteLeast.h"

namespace vblur::host {

namespace {

// Some readers fill in a truncated file and succeed, with an error message.
bool WasCutShort(const std::string& message) {
  return message.find("Premature end") != std::string::npos;
}

// A whole number of the tiles or strips that formats store, of about this size.
std::int32_t RowsOf(const OIIO::ImageSpec& spec) {
  constexpr std::size_t kBytes = std::size_t{8} << 20;
  constexpr std::int32_t kStrip = 64;
  const std::int32_t strip =
      spec.tile_height > 0 ? spec.tile_height : std::max(kStrip, spec.get_int_attribute("tiff:RowsPerStrip"));
  const auto rows = static_cast<std::int32_t>(
      std::min<std::size_t>(kBytes / std::max<std::size_t>(1, spec.scanline_bytes(false)), std::size_t{1} << 20));
  const std::int64_t whole = std::int64_t{std::max(1, rows / strip)} * strip;
  return static_cast<std::int32_t>(std::min<std::int64_t>(whole, spec.height));
}

class OpenedPicture final : public PictureSource {
 public:
  OpenedPicture(const std::filesystem::path& path, const ReadChoice& choice)
      : path_(path), picture_(OpenPictureFile(path, choice)), taken_(picture_.info.Taken()) {
    keepsPassing_ = choice.keepsPassing && !picture_.info.passing.empty();
    turnsValues_ = NeedsTurning(*picture_.file);
    if (const auto header = DpxHeader::Of(FileToOpen(path)))
      mended_ = DpxSamples::Of(FileToOpen(path), *header, Spec());
  }

  const PictureInfo& Info() const override { return picture_.info; }
  std::int32_t RowsAtOnce() const override { return RowsOf(Spec()); }
  void ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  ReadPicture Facts() override;

 private:
  const OIIO::ImageSpec& Spec() const { return picture_.file->spec(); }
  // Some channels of some rows, as `type` or, for an unknown one, as they are stored.
  void ReadChannels(std::int32_t first, std::int32_t count, int channel, int channels, const OIIO::TypeDesc& type,
                    std::byte* samples);
  bool ReadFromFile(std::int32_t first, std::int32_t count, int channel, int channels, const OIIO::TypeDesc& type,
                    std::byte* samples);
  // Out of pixels as they are stored.
  void ConvertTaken(std::size_t pixels, std::byte* samples) const;
  void KeepPassing(std::size_t pixels);
  std::size_t OffsetOf(int channel) const { return Spec().pixel_bytes(0, channel, true); }

  std::filesystem::path path_;
  OpenPicture picture_;
  TakenChannels taken_;
  bool keepsPassing_ = false;
  bool turnsValues_ = false;
  std::optional<DpxSamples> mended_;
  std::vector<std::byte> stored_;
  std::vector<std::byte> passing_;
};

void OpenedPicture::ReadChannels(std::int32_t first, std::int32_t count, int channel, int channels,
                                 const OIIO::TypeDesc& type, std::byte* samples) {
  const PictureFileChatter chatter;
  bool done = false;
  try {
    done = ReadFromFile(first, count, channel, channels, type, samples);
  } catch (const std::exception& error) {
    RefuseDamaged(path_, error);
  }
  const std::string message = picture_.file->geterror();
  if (done && !WasCutShort(message)) return;
  RefuseToRead(path_, "the picture is damaged or cut short (" + LibraryMessage(message, "its pixels end early") + ")");
}

bool OpenedPicture::ReadFromFile(std::int32_t first, std::int32_t count, int channel, int channels,
                                 const OIIO::TypeDesc& type, std::byte* samples) {
  const OIIO::ImageSpec& spec = Spec();
  const int begin = spec.y + first;
  const int end = begin + count;
  OIIO::ImageInput& file = *picture_.file;
  if (spec.tile_width > 0) {
    return file.read_tiles(0, 0, spec.x, spec.x + spec.width, begin, end, spec.z, spec.z + 1, channel,
                           channel + channels, type, samples);
  }
  return file.read_scanlines(0, 0, begin, end, spec.z, channel, channel + channels, type, samples);
}

void OpenedPicture::ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) {
  if (!keepsPassing_ && !turnsValues_ && !mended_) {
    return ReadChannels(first, count, taken_.first, taken_.count, TypeOf(picture_.info.samples), samples);
  }
  const std::size_t pixels = static_cast<std::size_t>(count) * static_cast<std::size_t>(Spec().width);
  try {
    stored_.resize(pixels * Spec().pixel_bytes(true));
    if (first == 0 && keepsPassing_) passing_.reserve(picture_.info.PassingBytes() * Spec().image_pixels());
  } catch (const std::bad_alloc&) {
    RefuseToRead(path_, "not enough memory for its channels as they are stored");
  }
  ReadChannels(first, count, 0, Spec().nchannels, OIIO::TypeDesc(), stored_.data());
  if (turnsValues_) TurnValues(Spec(), pixels, stored_.data());
  if (mended_) mended_->Mend(first, count, stored_.data());
  ConvertTaken(pixels, samples);
  if (keepsPassing_) KeepPassing(pixels);
}

void OpenedPicture::ConvertTaken(std::size_t pixels, std::byte* samples) const {
  const OIIO::TypeDesc type = TypeOf(picture_.info.samples);
  const auto stored = static_cast<OIIO::stride_t>(Spec().pixel_bytes(true));
  const auto wanted = static_cast<OIIO::stride_t>(type.size()) * taken_.count;
  for (int c = 0; c < taken_.count; ++c) {
    const int channel = taken_.first + c;
    OIIO::convert_image(1, static_cast<int>(pixels), 1, 1, stored_.data() + OffsetOf(channel),
                        Spec().channelformat(channel), stored, OIIO::AutoStride, OIIO::AutoStride,
                        samples + static_cast<std::size_t>(c) * type.size(), type, wanted, OIIO::AutoStride,
                        OIIO::AutoStride);
  }
}

void OpenedPicture::KeepPassing(std::size_t pixels) {
  struct Run {
    std::size_t offset;
    std::size_t bytes;
  };
  std::vector<Run> runs;
  for (const int channel : picture_.info.passing) {
    const Run next{OffsetOf(channel), Spec().channelformat(channel).size()};
    if (!runs.empty() && runs.back().offset + runs.back().bytes == next.offset) {
      runs.back().bytes += next.bytes;
    } else {
      runs.push_back(next);
    }
  }
  const std::size_t stored = Spec().pixel_bytes(true);
  std::size_t at = passing_.size();
  passing_.resize(at + pixels * picture_.info.PassingBytes());
  for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
    for (const Run& run : runs) {
      std::memcpy(passing_.data() + at, stored_.data() + pixel * stored + run.offset, run.bytes);
      at += run.bytes;
    }
  }
}

ReadPicture OpenedPicture::Facts() {
  auto metadata = std::make_shared<LibraryMetadata>(picture_.Metadata());
  metadata->passing = std::move(passing_);
  const bool associated = metadata->associatedAlpha;
  return {picture_.info, std::move(metadata), associated, {}};
}

}  // namespace

std::unique_ptr<PictureSource> OpenForReading(const std::filesystem::path& path, const ReadChoice& choice) {
  return std::make_unique<OpenedPicture>(path, choice);
}

}  // namespace vblur::host
