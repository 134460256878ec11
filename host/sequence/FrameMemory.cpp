#include "host/sequence/FrameMemory.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

#include <unistd.h>

#include "host/base/Failure.h"
#include "host/hosted/FrameBands.h"

namespace vblur::host {

namespace {

// Rows of the band and beside it for the filter that reaches furthest: three boxes of the largest radius.
constexpr std::int64_t kReachRows = 4 * 3 * 241;

std::int64_t OwnRows(const Job& job, std::int64_t pictureBytes, std::int64_t height) {
  if (!BandsServe(job)) return height;
  const std::int64_t rows = BandRows(pictureBytes, static_cast<std::int32_t>(height));
  return rows >= height ? height : std::min(rows + kReachRows, height);
}

// Whether the effect keeps the colours beside the brightness or the tones that it blurs.
bool KeepsColours(const Job& job) {
  constexpr std::string_view kKept[] = {"Luminance", "Chroma", "U", "V"};
  return std::ranges::find(kKept, ChannelsOf(job)) != std::end(kKept);
}

}  // namespace

FrameMemory EstimateFrameMemory(const Job& job, const JobPictures& pictures, std::int32_t frame, std::int32_t depth) {
  FrameMemory memory;
  memory.width = job.output.width.value_or(0);
  memory.height = job.output.height.value_or(0);
  if (job.input && (memory.width == 0 || memory.height == 0)) {
    const PictureInfo info = pictures.InputInfo(frame);
    if (memory.width == 0) memory.width = info.width;
    if (memory.height == 0) memory.height = info.height;
  }
  const std::int64_t rowBytes = memory.width * 4 * (depth / 8);
  const std::int64_t output = rowBytes * memory.height;
  const std::int64_t ownRows = OwnRows(job, output, memory.height);
  memory.isWhole = ownRows == memory.height;
  memory.pictures = pictures.BytesRead(frame, depth) + output;
  // The filter's own picture between its passes; a transition mixes or blurs its clips in another one.
  const std::int64_t own = 1 + (job.input2 ? 1 : 0) + (KeepsColours(job) ? 1 : 0);
  memory.own = rowBytes * ownRows * own;
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
  const std::int64_t pages = ::sysconf(_SC_PHYS_PAGES);
  const std::int64_t pageBytes = ::sysconf(_SC_PAGESIZE);
  return pages > 0 && pageBytes > 0 ? std::max(kLeast, pages * pageBytes / 2) : kLeast;
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
