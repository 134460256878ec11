#include "apps/vblur/JobWarnings.h"

#include <array>
#include <cstdint>
#include <optional>

#include "host/base/Failure.h"
#include "host/files/PictureInfo.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFiles.h"
#include "host/properties/PropertyText.h"

namespace vblur::cli {

namespace {

// The output in its frame: the offset of its lower left corner from the frame's, and its size.
struct OutputPart {
  std::array<std::int64_t, 2> corner{0, 0};
  std::array<std::int64_t, 2> size{0, 0};
};

// Of the first frame of a picture that a job reads, display and data window together. Throws host::Failure.
OutputPart PartOfFile(const host::Job& job, const std::string& file, const host::ReadChoice& choice = {}) {
  const host::FramePattern pattern(file);
  const auto path = host::JobFilePath(job, pattern, host::ResolveFrames(job).FrameAt(0));
  const auto info = host::ReadPictureInfo(path, choice);
  const host::FileWindow all = info.Picture();
  return {{std::int64_t{all.x} - info.display.x, info.display.Bottom() - all.Bottom()}, {all.width, all.height}};
}

// Nothing for an input that cannot be read.
std::optional<OutputPart> PartOf(const host::Job& job) {
  OutputPart part{{0, 0}, {job.output.width.value_or(0), job.output.height.value_or(0)}};
  if (job.output.width && job.output.height) return part;
  if (!job.input) return std::nullopt;
  try {
    const OutputPart input = PartOfFile(job, job.input->file);
    if (!job.output.width) part.corner[0] = input.corner[0];
    if (!job.output.height) part.corner[1] = input.corner[1];
    part.size = {job.output.width.value_or(input.size[0]), job.output.height.value_or(input.size[1])};
    return part;
  } catch (const host::Failure&) {
    return std::nullopt;
  }
}

// Whether an area, counted from the input's lower left corner, has no pixel in the output.
bool Misses(const host::Job& job, const OutputPart& output, const OutputPart& area) {
  // The effect adds this origin to regions and masks.
  const auto& origin = job.input ? job.input->origin : job.output.origin;
  const auto misses = [&](std::size_t axis) {
    const std::int64_t first = area.corner[axis] + origin[axis] - job.output.origin[axis];
    const std::int64_t corner = output.corner[axis];
    return first >= corner + output.size[axis] || first + area.size[axis] <= corner;
  };
  return misses(0) || misses(1);
}

std::string OutsideOf(const OutputPart& output) {
  return " lies outside the picture of " + std::to_string(output.size[0]) + " x " + std::to_string(output.size[1]) +
         " pixels; nothing is rendered";
}

}  // namespace

void WarnOfValues(const host::Job& job, Terminal& terminal) {
  if (job.duration == 0.0) terminal.Warn("duration: 0 is no length, expected more; rendered as it is");
  for (const Property& property : kProperties) {
    const auto* setting = job.properties.Find(property.guid);
    const auto value = setting ? host::ValueOutOfRange(property, *setting) : std::nullopt;
    if (!value) continue;
    terminal.Warn("properties/" + std::string(property.name) + ": " + host::FormatNumber(*value) + " is outside " +
                  host::FormatRange(property) + "; rendered as it is");
  }
}

void WarnOfRegion(const host::Job& job, Terminal& terminal) {
  if (!job.roi || terminal.IsQuiet()) return;
  const auto output = PartOf(job);
  if (!output) return;
  const host::Region& roi = *job.roi;
  if (Misses(job, *output, {{roi.x, roi.y}, {roi.width, roi.height}})) {
    terminal.Warn("roi: the region" + OutsideOf(*output));
  }
}

void WarnOfMask(const host::Job& job, Terminal& terminal) {
  if (host::ResolveKind(job) != host::EffectKind::Paint || !job.mask || !job.input || terminal.IsQuiet()) return;
  const auto output = PartOf(job);
  if (!output) return;
  try {
    host::ReadChoice choice;
    choice.use = host::PictureUse::Mask;
    choice.channel = job.mask->channel;
    OutputPart mask = PartOfFile(job, job.mask->file, choice);
    mask.corner[0] += job.mask->offset[0];
    mask.corner[1] += job.mask->offset[1];
    if (Misses(job, *output, mask)) terminal.Warn("mask: it" + OutsideOf(*output));
  } catch (const host::Failure&) {
    // The renderer tells it.
  }
}

}  // namespace vblur::cli
