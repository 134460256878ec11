#include "host/hosted/JobFrame.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "host/base/Failure.h"
#include "host/hosted/EffectHost.h"
#include "host/jobs/JobCheck.h"

namespace vblur::host {

namespace {

bool LiesAlike(const HostImage& input, const HostImage& output) {
  const DSPixelPair in = input.HostOrigin();
  const DSPixelPair out = output.HostOrigin();
  return input.Width() == output.Width() && input.Height() == output.Height() && in.x == out.x && in.y == out.y;
}

// Whether the output holds the input outside the region.
bool KeepsInput(const Job& job, const FramePictures& pictures) {
  if (!job.roi || job.output.initial || job.outside == OutsideChoice::Clear) return false;
  if (pictures.input != nullptr && LiesAlike(*pictures.input, *pictures.output)) return true;
  if (job.outside) Refuse("outside", "the input has not the size and the place of the output, expected clear");
  return false;
}

void CopyOutside(const Region& region, const HostImage& input, HostImage& output) {
  const std::size_t pixel = output.RowBytes() / static_cast<std::size_t>(output.Width());
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

}  // namespace

void PrepareOutput(const Job& job, std::int32_t depth, const HostImage* input,
                   const std::optional<InitialPicture>& initial, HostImage& output) {
  const auto width = job.output.width.value_or(input ? input->Width() : 0);
  const auto height = job.output.height.value_or(input ? input->Height() : 0);
  if (std::int64_t{4} * width > HostImage::kMostComponents / std::max(1, height)) {
    Refuse("output", std::to_string(width) + " x " + std::to_string(height) +
                         " pixels are more than 2^31 components (4 a pixel)");
  }
  output.Reset(depth, 4, width, height);
  output.Place(job.output);
  if (!initial) return output.Clear();
  const HostImage& image = initial->image;
  if (image.Width() != width || image.Height() != height) {
    Refuse(initial->file.string(), std::to_string(image.Width()) + " x " + std::to_string(image.Height()) +
                                       " pixels, expected the output's " + std::to_string(width) + " x " +
                                       std::to_string(height));
  }
  std::memcpy(output.FirstPixel(), image.FirstPixel(), output.ByteCount());
}

std::optional<ProjectSizes> ProjectOf(const Job& job, const HostImage& output) {
  if (job.project || job.projectUnreadable) return job.project;
  const std::array<double, 2> size{static_cast<double>(output.Width()), static_cast<double>(output.Height())};
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

HRESULT RenderFields(HostedEffect& effect, const Job& job, FramePictures pictures, double time, ExecuteContext& context,
                     const std::function<void()>& afterField) {
  EffectHost host(ProjectOf(job, *pictures.output));
  if (job.mask) pictures.maskOffset = job.mask->offset;
  CheckPlaces(pictures);
  const bool keepsInput = KeepsInput(job, pictures);
  const bool both = job.field == FieldChoice::Both;
  HRESULT result = kOk;
  for (const FieldChoice field : {both ? FieldChoice::First : job.field, FieldChoice::Second}) {
    result = effect.RenderFrame(pictures, host, time, static_cast<std::int32_t>(field));
    afterField();
    if (result != kOk || !both || context.Stopped() || !effect.WhyNotRendered().empty()) break;
  }
  // Last: some channel choices, and a region beside the picture, write pixels outside the region.
  if (keepsInput) CopyOutside(*job.roi, *pictures.input, *pictures.output);
  return result;
}

}  // namespace vblur::host
