#include "host/jobs/JobCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/StandardStream.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/FrameRangeText.h"
#include "host/jobs/JobFiles.h"
#include "host/properties/PropertyText.h"
#include "platform/IVBlurFacts.h"

namespace vblur::host {

namespace {

// Every file name of a job is looked at before the first frame.
constexpr std::int64_t kMostFrames = 1'000'000;

void CheckFinite(std::string_view where, double value) {
  if (!std::isfinite(value)) Refuse(where, "expected a finite number, found " + FormatNumber(value));
}

void CheckFinite(std::string_view where, const std::array<double, 2>& pair) {
  CheckFinite(where, pair[0]);
  CheckFinite(where, pair[1]);
}

// Effects take sizes as 32-bit floats.
void CheckAboveZero(std::string_view where, const std::array<double, 2>& size) {
  for (const double value : size) {
    if (!(static_cast<float>(value) > 0.0f)) {
      Refuse(where, "expected a width and a height above 0, found " + FormatNumber(value));
    }
  }
}

void CheckAtLeastOne(std::string_view where, std::int32_t value) {
  if (value < 1) Refuse(where, "expected at least 1, found " + std::to_string(value));
}

void CheckPixel(std::string_view where, std::int64_t position) {
  constexpr std::int32_t kFirst = -FrameLimits::kFarthestPixel;
  constexpr std::int32_t kLast = FrameLimits::kFarthestPixel - 1;
  if (position >= kFirst && position <= kLast) return;
  Refuse(where, "reaches pixel " + std::to_string(position) + ", expected pixels from " + std::to_string(kFirst) +
                    " to " + std::to_string(kLast));
}

void CheckPixels(std::string_view where, std::int64_t first, std::int64_t count) {
  CheckPixel(where, first);
  CheckPixel(where, first + count - 1);
}

void CheckSide(std::string_view where, std::int32_t pixels) {
  CheckAtLeastOne(where, pixels);
  if (pixels > FrameLimits::kLongestSide) {
    Refuse(where, "expected at most " + std::to_string(FrameLimits::kLongestSide) + " pixels, found " +
                      std::to_string(pixels));
  }
}

void CheckPlace(const std::string& where, const ImageRecord& image) {
  if (image.file.empty()) Refuse(where, "expected a file name, found none");
  if (image.position) CheckFinite(where + "/position", *image.position);
  if (image.size) CheckFinite(where + "/size", *image.size);
  if (image.size) CheckAboveZero(where + "/size", *image.size);
  CheckPixel(where + "/origin", image.origin[0]);
  CheckPixel(where + "/origin", image.origin[1]);
}

// The effect adds the origin of the first input, or of the output when there is no input.
void CheckRegion(const Job& job, const Region& region) {
  CheckAtLeastOne("roi width", region.width);
  CheckAtLeastOne("roi height", region.height);
  const std::array<std::int32_t, 2>& origin = job.input ? job.input->origin : job.output.origin;
  for (const std::int64_t shift : {0, 1}) {
    const auto x = std::int64_t{region.x} + shift * origin[0];
    const auto y = std::int64_t{region.y} + shift * origin[1];
    CheckPixels("roi", x, region.width);
    CheckPixels("roi", y, region.height);
  }
}

void CheckMaskPlace(const MaskRecord& mask, const ImageRecord& input) {
  CheckPixel("mask/offset", std::int64_t{mask.offset[0]} + input.origin[0]);
  CheckPixel("mask/offset", std::int64_t{mask.offset[1]} + input.origin[1]);
}

void CheckImages(const Job& job) {
  if (job.input) CheckPlace("input", *job.input);
  if (job.input2) CheckPlace("input2", *job.input2);
  if (job.mask) CheckPlace("mask", *job.mask);
  CheckPlace("output", job.output);
  if (job.output.width) CheckSide("output/width", *job.output.width);
  if (job.output.height) CheckSide("output/height", *job.output.height);
  CheckPictureAt("output", {job.output.origin[0], job.output.origin[1]}, job.output.width.value_or(1),
                 job.output.height.value_or(1));
  if (job.mask && job.input) CheckMaskPlace(*job.mask, *job.input);
  if (job.output.initial && job.output.initial->empty()) Refuse("output/initial", "expected a file name, found none");
  if (job.roi) CheckRegion(job, *job.roi);
}

void CheckSetting(const Property& property, const PropertyStore::Setting& setting) {
  const std::string where = "properties/" + std::string(property.name);
  const auto check = [&](double value) {
    if (!IsAllowed(property, value)) {
      Refuse(where, "expected " + ExpectedValue(property) + ", found " + FormatNumber(value));
    }
  };
  const auto* curve = std::get_if<Curve>(&setting);
  if (curve == nullptr) return check(std::get<double>(setting));
  for (const CurveKey& key : curve->keys) {
    CheckFinite(where, key.time);
    check(key.value);
  }
}

void CheckRange(const FrameRange& range) {
  if (range.last < range.first) {
    Refuse("frames", "expected a last frame that is not before the first, found " + FormatFrameRange(range));
  }
  CheckAtLeastOne("frame step", range.step);
}

// Numbers of 32 bits for all outputs.
void CheckOutputNumbers(const Job& job) {
  if (!job.output.renumber) return;
  const FrameList frames = ResolveFrames(job);
  for (const std::int64_t frame : {frames.First(), frames.Last()}) {
    const std::int64_t number = *job.output.renumber + (frame - ResolveStart(job));
    if (number == static_cast<std::int32_t>(number)) continue;
    Refuse("output/renumber", "frame " + std::to_string(frame) + " would have the number " + std::to_string(number) +
                                  ", expected numbers from -2147483648 to 2147483647");
  }
}

FramePattern Pattern(std::string_view field, const std::string& file) {
  try {
    return FramePattern(file);
  } catch (const Failure& failure) {
    Refuse(field, failure.what());
  }
}

void CheckNumbers(const Job& job) {
  std::vector<JobSource> files = FilesReadBy(job);
  files.push_back({"output", &job.output.file});
  for (const auto& [field, file] : files) {
    if (Pattern(field, *file).HasNumber() && !job.frames) {
      Refuse(field, "the file name " + Quoted(*file) + " takes a frame number, expected frames such as 1-48");
    }
  }
  const FrameList frames = ResolveFrames(job);
  CheckFrameCount(frames.Count());
  if (frames.Count() > 1 && !FramePattern(job.output.file).HasNumber()) {
    Refuse("output", std::to_string(frames.Count()) + " frames would all be written to " + Quoted(job.output.file) +
                         ", expected a file name with a frame number such as out.%04d.png");
  }
}

void CheckOutside(const Job& job) {
  if (!job.outside) return;
  if (!job.roi) Refuse("outside", "there is no region to be outside of, expected roi too");
  if (job.output.initial) Refuse("outside", "output/initial is what the output holds there, expected one of the two");
  if (*job.outside == OutsideChoice::Keep && !job.input) Refuse("outside", "there is no input to keep, expected clear");
}

// What can be computed with, but stands for nothing.
void CheckScales(const Job& job) {
  if (job.duration && *job.duration < 0.0) {
    Refuse("duration", "expected 0 or more, found " + FormatNumber(*job.duration));
  }
  for (const double factor : job.proxy) {
    if (!(factor > 0.0)) Refuse("proxy", "expected two factors above 0, found " + FormatNumber(factor));
  }
}

void CheckNeeds(const Job& job) {
  const EffectKind kind = ResolveKind(job);
  if (NeedsInput(kind) && !job.input) Refuse("input", "missing, expected a picture to work on");
  if (kind == EffectKind::Transition && !job.input2)
    Refuse("input2", "missing, expected a second clip for a transition");
  if (kind == EffectKind::Paint && !job.mask) Refuse("mask", "missing, expected a mask to paint through");
  CheckOutside(job);
  if (job.mask && !job.input) Refuse("mask", "lies relative to the input, expected an input too");
  if (!job.input && !(job.output.width && job.output.height)) {
    Refuse("output", "expected width and height, since there is no input to take them from");
  }
}

}  // namespace

void CheckStreams(const Job& job) {
  std::string_view reader;
  for (const auto& [field, file] : FilesReadBy(job)) {
    if (!IsStandardStream(*file)) continue;
    if (!reader.empty()) {
      Refuse(field, "the standard input is read as " + std::string(reader) + " already, expected a file");
    }
    reader = field;
  }
}

void CheckPictureAt(std::string_view where, const PixelPosition& corner, std::int32_t width, std::int32_t height) {
  CheckSide(where, width);
  CheckSide(where, height);
  CheckPixels(where, corner[0], width);
  CheckPixels(where, corner[1], height);
}

EffectKind ResolveKind(const Job& job) {
  if (job.kind) return *job.kind;
  if (job.input2) return EffectKind::Transition;
  return job.mask ? EffectKind::Paint : EffectKind::Filter;
}

FrameList ResolveFrames(const Job& job) {
  return job.frames.value_or(FrameList());
}

double ResolveDuration(const Job& job) {
  if (job.duration) return *job.duration;
  const FrameList frames = ResolveFrames(job);
  return static_cast<double>(std::int64_t{frames.Last()} - frames.First() + 1);
}

std::int32_t ResolveStart(const Job& job) {
  if (job.start) return *job.start;
  return job.frames ? job.frames->First() : 0;
}

double FrameTime(const Job& job, std::int32_t frame) {
  return job.time + static_cast<double>(std::int64_t{frame} - ResolveStart(job));
}

void TakeFrames(Job& job, const FrameList& frames) {
  if (!job.frames && !job.duration && ResolveKind(job) == EffectKind::Transition) {
    Refuse("duration", "missing, expected the length of the transition, since the job has no frames to take it from");
  }
  job.start = ResolveStart(job);
  job.duration = ResolveDuration(job);
  job.frames = frames;
}

std::int32_t OutputNumber(const Job& job, std::int32_t frame) {
  if (!job.output.renumber) return frame;
  return static_cast<std::int32_t>(*job.output.renumber + (std::int64_t{frame} - ResolveStart(job)));
}

void CheckFrameCount(std::int64_t count) {
  if (count <= kMostFrames) return;
  Refuse("frames", std::to_string(count) + " frames, expected at most " + std::to_string(kMostFrames));
}

void CheckDepth(std::string_view place, std::int32_t depth) {
  if (!IsDepth(depth)) Refuse(place, "expected 8, 16 or 32, found " + std::to_string(depth));
}

bool NeedsInput(EffectKind kind) {
  return kind != EffectKind::Generator && kind != EffectKind::Other;
}

void CheckValues(const Job& job) {
  if (job.depth) CheckDepth("depth", *job.depth);
  constexpr std::array kKinds{EffectKind::Filter, EffectKind::Source,     EffectKind::Generator,
                              EffectKind::Paint,  EffectKind::Transition, EffectKind::Other};
  if (job.kind && std::ranges::find(kKinds, *job.kind) == kKinds.end()) {
    Refuse("use", "expected 1 to 5 or 7, found " + std::to_string(static_cast<std::int32_t>(*job.kind)));
  }
  CheckImages(job);
  const FrameList frames = ResolveFrames(job);
  for (const FrameRange& range : frames.Ranges())
    CheckRange(range);
  CheckOutputNumbers(job);
  CheckFinite("time", job.time);
  if (job.duration) CheckFinite("duration", *job.duration);
  if (job.project) CheckFinite("project/userSize", job.project->user);
  if (job.project) CheckFinite("project/worldSize", job.project->world);
  CheckFinite("proxy", job.proxy);
  for (const auto& [guid, setting] : job.properties.Settings())
    CheckSetting(*FindProperty(guid), setting);
}

void CheckJob(const Job& job, const JobCheckOptions& options) {
  CheckValues(job);
  CheckScales(job);
  CheckNeeds(job);
  CheckStreams(job);
  CheckNumbers(job);
  CheckOutputFiles(job, ResolveFrames(job), options.outputMayBeInput);
}

}  // namespace vblur::host
