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

// Nothing for an input that cannot be read.
std::optional<OutputPart> PartOf(const host::Job& job) {
  OutputPart part{{0, 0}, {job.output.width.value_or(0), job.output.height.value_or(0)}};
  if (job.output.width && job.output.height) return part;
  if (!job.input) return std::nullopt;
  try {
    const host::FramePattern pattern(job.input->file);
    const auto info = host::ReadPictureInfo(host::JobFilePath(job, pattern, host::ResolveFrames(job).FrameAt(0)));
    const host::FileWindow all = info.Picture();
    if (!job.output.width) part.corner[0] = std::int64_t{all.x} - info.display.x;
    if (!job.output.height) part.corner[1] = info.display.Bottom() - all.Bottom();
    part.size = {job.output.width.value_or(all.width), job.output.height.value_or(all.height)};
    return part;
  } catch (const host::Failure&) {
    return std::nullopt;
  }
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
  const auto part = PartOf(job);
  if (!part) return;
  // The effect adds this origin to the region.
  const auto& origin = job.input ? job.input->origin : job.output.origin;
  const auto misses = [&](std::size_t axis, std::int64_t from, std::int64_t count) {
    const std::int64_t first = from + origin[axis] - job.output.origin[axis];
    const std::int64_t corner = part->corner[axis];
    return first >= corner + part->size[axis] || first + count <= corner;
  };
  const host::Region& roi = *job.roi;
  if (!misses(0, roi.x, roi.width) && !misses(1, roi.y, roi.height)) return;
  terminal.Warn("roi: the region lies outside the picture of " + std::to_string(part->size[0]) + " x " +
                std::to_string(part->size[1]) + " pixels; nothing is rendered");
}

}  // namespace vblur::cli
