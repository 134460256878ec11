#include "host/hosted/JobFrame.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/FrameBands.h"
#include "host/hosted/LinearLight.h"
#include "host/hosted/Premultiply.h"
#include "host/jobs/JobCheck.h"

namespace vblur::host {

namespace {

// Whether the output holds the input outside the region.
bool KeepsInput(const Job& job, const FramePictures& pictures) {
  if (!job.roi || job.output.initial || job.outside == OutsideChoice::Clear) return false;
  if (pictures.input != nullptr && LieAlike(*pictures.input, *pictures.output)) return true;
  if (job.outside) Refuse("outside", "the input has not the size and the place of the output, expected clear");
  return false;
}

void CopyOutside(const Region& region, const HostImage& input, HostImage& output) {
  const std::size_t pixel = output.PixelBytes();
  const auto within = [](std::int64_t position, std::int32_t size) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(position, 0, size));
  };
  const std::int32_t left = within(region.x, output.Width());
  const std::int32_t right = within(std::int64_t{region.x} + region.width, output.Width());
  const std::int32_t bottom = within(region.y, output.Height());
  const std::int32_t top = within(std::int64_t{region.y} + region.height, output.Height());
  const auto copy = [&](std::int32_t y, std::int32_t first, std::int32_t last) {
    const std::size_t start = pixel * static_cast<std::size_t>(first);
    std::memcpy(output.Row(y) + start, input.Row(y) + start, pixel * static_cast<std::size_t>(last - first));
  };
  for (std::int32_t y = 0; y < output.Height(); ++y) {
    const bool crosses = y >= bottom && y < top;
    copy(y, 0, crosses ? left : output.Width());
    if (crosses) copy(y, right, output.Width());
  }
}

// Frame over frame; what the initial picture does not reach is zero.
void CopyInitial(const InitialPicture& initial, HostImage& output) {
  const HostImage& from = initial.image;
  const DSPixelPair have = from.FrameSize();
  const DSPixelPair want = output.FrameSize();
  if (have.x != want.x || have.y != want.y) {
    Refuse(InputName(initial.file), std::to_string(have.x) + " x " + std::to_string(have.y) +
                                        " pixels, expected the output's " + std::to_string(want.x) + " x " +
                                        std::to_string(want.y));
  }
  output.Clear();
  const DSPixelPair a = from.FrameCorner();
  const DSPixelPair b = output.FrameCorner();
  const auto left = std::max(a.x, b.x);
  const auto right = std::min(a.x + from.Width(), b.x + output.Width());
  const auto top = std::min(a.y + from.Height(), b.y + output.Height());
  for (std::int32_t y = std::max(a.y, b.y); y < top && left < right; ++y) {
    const auto at = [&](const auto& image, DSPixelPair corner) {
      return image.Row(y - corner.y) + static_cast<std::size_t>(left - corner.x) * image.PixelBytes();
    };
    std::memcpy(const_cast<std::byte*>(at(output, b)), at(from, a),
                static_cast<std::size_t>(right - left) * output.PixelBytes());
  }
}

// Positions beyond 32 bits are beyond the pixels that count.
std::int32_t Limited(std::int64_t position) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(position, Limits::min(), Limits::max()));
}

// The effect counts the region from the lower left corner of the input, or of the output where there is no input; the
// job counts it from that of the frame.
std::optional<Region> RegionOf(const Job& job, const FramePictures& pictures) {
  if (!job.roi) return std::nullopt;
  const DSPixelPair corner = (pictures.input ? pictures.input : pictures.output)->FrameCorner();
  Region region = *job.roi;
  region.x = Limited(std::int64_t{region.x} - corner.x);
  region.y = Limited(std::int64_t{region.y} - corner.y);
  return region;
}

// The effect counts from the input's lower left corner to the mask's, the job from frame to frame.
std::array<std::int32_t, 2> MaskOffsetOf(const Job& job, const FramePictures& pictures) {
  if (!job.mask || !pictures.mask || !pictures.input) return {0, 0};
  const DSPixelPair mask = pictures.mask->FrameCorner();
  const DSPixelPair input = pictures.input->FrameCorner();
  const std::array<std::int64_t, 2> offset{job.mask->offset[0], job.mask->offset[1]};
  return {Limited(offset[0] + mask.x - input.x), Limited(offset[1] + mask.y - input.y)};
}

}  // namespace

std::optional<Region> RegionInInput(const Job& job, const FramePictures& pictures) {
  return KeepsInput(job, pictures) ? RegionOf(job, pictures) : std::nullopt;
}

void PrepareOutput(const Job& job, std::int32_t depth, const HostImage* input,
                   const std::optional<InitialPicture>& initial, HostImage& output) {
  const auto width = job.output.width.value_or(input ? input->Width() : 0);
  const auto height = job.output.height.value_or(input ? input->Height() : 0);
  if (std::int64_t{4} * width > HostImage::kMostComponents / std::max(1, height)) {
    Refuse("output", std::to_string(width) + " x " + std::to_string(height) +
                         " pixels are more than 2^31 components (4 a pixel)");
  }
  output.Reset(depth, 4, width, height);
  DSPixelPair corner = input ? input->FrameCorner() : DSPixelPair{};
  DSPixelPair frame = input ? input->FrameSize() : DSPixelPair{};
  if (job.output.width) {
    corner.x = 0;
    frame.x = width;
  }
  if (job.output.height) {
    corner.y = 0;
    frame.y = height;
  }
  output.PutInFrame(corner, frame);
  output.Place(job.output);
  if (initial) return CopyInitial(*initial, output);
  output.Clear();
}

std::optional<ProjectSizes> ProjectOf(const Job& job, const HostImage& output) {
  if (job.project || job.projectUnreadable) return job.project;
  const DSPixelPair frame = output.FrameSize();
  const std::array<double, 2> size{static_cast<double>(frame.x), static_cast<double>(frame.y)};
  return ProjectSizes{size, size};
}

void CheckPlaces(const FramePictures& pictures) {
  const auto check = [](const char* field, const HostImage* image) {
    if (image == nullptr) return;
    const DSPixelPair origin = image->HostOrigin();
    CheckPictureAt(field, {origin.x, origin.y}, image->Width(), image->Height());
  };
  check("output", pictures.output);
  check("input", pictures.input);
  check("input2", pictures.input2);
  if (pictures.mask == nullptr) return;
  // A mask lies relative to the input, whatever its own origin.
  const DSPixelPair input = pictures.input == nullptr ? DSPixelPair{} : pictures.input->HostOrigin();
  const auto& offset = pictures.maskOffset;
  CheckPictureAt("mask", {std::int64_t{input.x} + offset[0], std::int64_t{input.y} + offset[1]}, pictures.mask->Width(),
                 pictures.mask->Height());
}

// From the colours that are rendered to those of the file.
void FinishColours(const Job& job, const FramePictures& pictures, HostRows rows) {
  if (job.premultipliesAround) DivideByAlpha(*pictures.output, rows);
  if (pictures.encodesColours) EncodeColours(*pictures.output, rows, pictures.hasPremultipliedColours);
}

HRESULT RenderFields(HostedEffect& effect, const Job& job, FramePictures pictures, double time, ExecuteContext& context,
                     const std::function<void()>& afterField) {
  EffectHost host(ProjectOf(job, *pictures.output));
  pictures.maskOffset = MaskOffsetOf(job, pictures);
  const auto region = RegionOf(job, pictures);
  CheckPlaces(pictures);
  const bool keepsInput = KeepsInput(job, pictures);
  const HostImage& output = *pictures.output;
  const std::int32_t rows = BandRows(static_cast<std::int64_t>(output.ByteCount()), output.Height());
  const auto afterPart = [&] {
    afterField();
    return !context.Stopped() && effect.WhyNotRendered().empty();
  };
  const bool both = job.field == FieldChoice::Both;
  HRESULT result = kOk;
  for (const FieldChoice field : {both ? FieldChoice::First : job.field, FieldChoice::Second}) {
    result =
        RenderInBands(effect, job, pictures, host, time, static_cast<std::int32_t>(field), region, rows, afterPart);
    if (result != kOk || !both || context.Stopped() || !effect.WhyNotRendered().empty()) break;
  }
  // Last: some channel choices, and a region beside the picture, write pixels outside the region.
  if (keepsInput) CopyOutside(*region, *pictures.input, *pictures.output);
  if (result == kOk) FinishColours(job, pictures, output.AllRows());
  return result;
}

HRESULT RenderBetween(HostedEffect& effect, const Job& job, FramePictures pictures, double time,
                      ExecuteContext& context, const BandSteps& steps) {
  EffectHost host(ProjectOf(job, *pictures.output));
  pictures.maskOffset = MaskOffsetOf(job, pictures);
  CheckPlaces(pictures);
  HostRows finished{pictures.output->Height(), pictures.output->Height()};
  const auto goesOn = [&](std::int32_t bottom) {
    if (context.Stopped() || !effect.WhyNotRendered().empty()) return false;
    finished = {bottom, finished.begin};
    FinishColours(job, pictures, finished);
    return steps.after(bottom);
  };
  return RenderDownward(effect, job, pictures, host, time, {steps.before, goesOn});
}

}  // namespace vblur::host
