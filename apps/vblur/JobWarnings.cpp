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

// Nothing for an input that cannot be read.
std::optional<std::array<std::int64_t, 2>> OutputSize(const host::Job& job) {
  if (job.output.width && job.output.height) return {{*job.output.width, *job.output.height}};
  if (!job.input) return std::nullopt;
  try {
    const host::FramePattern pattern(job.input->file);
    const auto info = host::ReadPictureInfo(host::JobFilePath(job, pattern, host::ResolveFrames(job).FrameAt(0)));
    return {{job.output.width.value_or(info.width), job.output.height.value_or(info.height)}};
  } catch (const host::Failure&) {
    return std::nullopt;
  }
}

}  // namespace

void WarnOfValues(const host::Job& job, Terminal& terminal) {
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
  const auto size = OutputSize(job);
  if (!size) return;
  // The effect adds this origin to the region.
  const auto& origin = job.input ? job.input->origin : job.output.origin;
  const auto misses = [&](std::size_t axis, std::int64_t from, std::int64_t count) {
    const std::int64_t first = from + origin[axis] - job.output.origin[axis];
    return first >= (*size)[axis] || first + count <= 0;
  };
  const host::Region& roi = *job.roi;
  if (!misses(0, roi.x, roi.width) && !misses(1, roi.y, roi.height)) return;
  terminal.Warn("roi: the region lies outside the picture of " + std::to_string((*size)[0]) + " x " +
                std::to_string((*size)[1]) + " pixels; nothing is rendered");
}

}  // namespace vblur::cli
