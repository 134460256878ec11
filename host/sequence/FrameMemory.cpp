#include "host/sequence/FrameMemory.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <string_view>

#include "host/base/Failure.h"
#include "host/hosted/FrameBands.h"
#include "host/sequence/Machine.h"

namespace vblur::host {

namespace {

// Whether the frame's pictures, whose files these facts are of, and its region lie so that bands serve; false where
// only the pictures themselves would tell.
bool BandsServeSizes(const Job& job, const std::optional<PictureInfo>& input, std::int64_t width, std::int64_t height) {
  if (input) {
    if (input->width != width || input->height != height || job.input->origin != job.output.origin) return false;
    const bool isFrame = input->width == input->display.width && input->height == input->display.height;
    const bool placesOutput = job.roi || job.field != FieldChoice::Frame || job.output.width || job.output.height;
    if (placesOutput && !isFrame) return false;
  }
  if (job.field != FieldChoice::Frame && job.output.origin[1] < 0) return false;
  if (!job.roi) return true;
  const Region& region = *job.roi;
  return region.x < width && region.y < height && std::int64_t{region.x} + region.width > 0 &&
         std::int64_t{region.y} + region.height > 0;
}

// Whether the effect keeps the colours beside the brightness or the tones that it blurs.
bool KeepsColours(const Job& job) {
  constexpr std::string_view kKept[] = {"Luminance", "Chroma", "U", "V"};
  return std::ranges::find(kKept, ChannelsOf(job)) != std::end(kKept);
}

}  // namespace

FrameMemory EstimateFrameMemory(const Job& job, const JobPictures& pictures, std::int32_t frame, const FrameUse& use) {
  FrameMemory memory;
  memory.width = job.output.width.value_or(0);
  memory.height = job.output.height.value_or(0);
  std::optional<PictureInfo> input;
  if (job.input) {
    input = pictures.InputInfo(frame);
    if (memory.width == 0) memory.width = input->width;
    if (memory.height == 0) memory.height = input->height;
  }
  const std::int64_t rowBytes = memory.width * 4 * (use.depth / 8);
  const std::int64_t output = rowBytes * memory.height;
  // The plain code of the filter has a picture of all rows in any case.
  const bool inBands = use.usesVectors && BandsServe(job) && BandsServeSizes(job, input, memory.width, memory.height);
  const BandSize band = inBands ? MostOfBand(job, use.time, output, memory.height) : BandSize{memory.height, 0};
  memory.isWhole = band.rows == memory.height;
  memory.pictures = pictures.BytesRead(frame, use.depth) + output;
  // The filter's own picture between its passes; a transition mixes or blurs its clips in another one.
  std::int64_t own = 1 + (job.input2 ? 1 : 0) + (KeepsColours(job) ? 1 : 0);
  // A band's own output, and the planes that are made of it.
  if (!memory.isWhole && BandsAreApart(job)) own += 2;
  memory.own = rowBytes * (band.rows + 4 * band.reach) * own;
  // Bands differ in their rows, and the effect keeps some of what it took for reuse.
  constexpr std::int64_t kKept = std::int64_t{256} << 20;
  if (!memory.isWhole) memory.own += std::min(memory.own, kKept);
  return memory;
}

void RequireMemory(const FrameMemory& memory, std::int64_t allowed, const std::string& file) {
  if (memory.Total() <= allowed) return;
  throw Failure(ExitCode::SomeFramesFailed,
                file + ": a frame of " + std::to_string(memory.width) + " x " + std::to_string(memory.height) +
                    " pixels needs " + FormatBytes(memory.Total()) + " of memory" +
                    (memory.isWhole ? "" : " in bands") + ", " + FormatBytes(allowed) + " are allowed",
                FailureKind::NeedsMemory);
}

std::int64_t DefaultMemory() {
  constexpr std::int64_t kLeast = std::int64_t{2} << 30;
  return std::max(kLeast, MachineMemory() / 2);
}

std::string FormatBytes(std::int64_t bytes) {
  constexpr double kGibi = 1024.0 * 1024.0 * 1024.0;
  constexpr double kMebi = 1024.0 * 1024.0;
  const auto size = static_cast<double>(bytes);
  if (size < kMebi) return std::to_string(static_cast<std::int64_t>(std::ceil(size / 1024.0))) + "K";
  if (size < kGibi) return std::to_string(static_cast<std::int64_t>(std::ceil(size / kMebi))) + "M";
  const auto tenths = static_cast<std::int64_t>(std::ceil(size / kGibi * 10.0));
  return std::to_string(tenths / 10) + (tenths % 10 != 0 ? "." + std::to_string(tenths % 10) : std::string()) + "G";
}

}  // namespace vblur::host
