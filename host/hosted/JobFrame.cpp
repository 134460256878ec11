#include "host/hosted/JobFrame.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "host/base/Failure.h"
#include "host/hosted/EffectHost.h"
#include "host/jobs/JobCheck.h"

namespace vblur::host {

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
  const bool both = job.field == FieldChoice::Both;
  HRESULT result = kOk;
  for (const FieldChoice field : {both ? FieldChoice::First : job.field, FieldChoice::Second}) {
    result = effect.RenderFrame(pictures, host, time, static_cast<std::int32_t>(field));
    afterField();
    if (result != kOk || !both || context.Stopped() || !effect.WhyNotRendered().empty()) break;
  }
  return result;
}

}  // namespace vblur::host
