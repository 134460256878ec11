// One frame of a job: what it is rendered into, the project that it belongs to, and its fields.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "host/hosted/ExecuteContext.h"
#include "host/hosted/FrameBands.h"
#include "host/hosted/HostImage.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// The initial content of an output, and its file.
struct InitialPicture {
  const HostImage& image;
  std::filesystem::path file;
};

// Makes the output of a frame: of the job's size, or the same part of the same frame as the input (null for none), at
// the output's place, all zero or as it was initially. Throws Failure (wrong usage) for more than 2^31 components and
// for an initial picture whose frame has another size.
void PrepareOutput(const Job& job, std::int32_t depth, const HostImage* input,
                   const std::optional<InitialPicture>& initial, HostImage& output);

// The region of a frame's pictures, from their lower left corner, around which the output is the input; nothing where
// it is not. Throws Failure (wrong usage) for an input that is to be kept and lies otherwise than the output.
std::optional<Region> RegionInInput(const Job& job, const FramePictures& pictures);

// The job's project: by default with the output's sizes; nothing for a job whose project is unreadable.
std::optional<ProjectSizes> ProjectOf(const Job& job, const HostImage& output);

// Refuses pictures that lie beyond the pixels that the effect counts. Throws Failure (wrong usage) that begins with the
// job's field.
void CheckPlaces(const FramePictures& pictures);

// Renders the frame, in the job's region, or both its fields one after the other; calls `afterField` after each, and
// after each band of a large one. Ends at the first result that is not 0, when the effect says that it rendered
// nothing, and when the context is stopped. Then puts the input around the region as far as the job says so. Throws as
// CheckPlaces does, and Failure (wrong usage) for an input that is to be kept and lies otherwise than the output.
HRESULT RenderFields(HostedEffect& effect, const Job& job, FramePictures pictures, double time, ExecuteContext& context,
                     const std::function<void()>& afterField);

// As RenderFields, for jobs whose bands follow the input: while it is read and the output is written.
HRESULT RenderBetween(HostedEffect& effect, const Job& job, FramePictures pictures, double time,
                      ExecuteContext& context, const BandSteps& steps);

}  // namespace vblur::host
