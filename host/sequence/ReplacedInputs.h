// What a picture that a frame reads would lose if the frame's output took its place.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/files/PictureReport.h"
#include "host/jobs/Job.h"

namespace vblur::host {

struct ReplacedInput {
  std::filesystem::path file;
  std::filesystem::path output;  // by a name of its own, whose extension may be another
  OutputStorage storage;         // of the output
  // The first input of the frame, which the output is made like; nothing in a job without one.
  std::optional<PictureInfo> input;
  // Whether it is this very file. Others are the second clip, the mask and the initial picture, of which an output
  // holds no metadata and no further channels.
  bool isInput = false;
};

// A list of words; empty where nothing is lost. `depth` is the one rendered at. Throws as ReportPicture does.
std::string LossesOfReplaced(const Job& job, const ReplacedInput& replaced, std::int32_t depth);

}  // namespace vblur::host
