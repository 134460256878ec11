#include "tests/hashes/HashedSequences.h"

#include <filesystem>
#include <utility>

#include "host/jobs/FramePattern.h"
#include "host/properties/Curve.h"
#include "tests/differential/PngLimits.h"
#include "tests/differential/Rolls.h"

namespace vblur::hashes {
namespace {

using differential::DrawnFrame;

constexpr std::uint64_t kSequenceSeed = 20002;
constexpr std::uint64_t kFrameSeed = 20003;
constexpr std::uint64_t kTimeSeed = 20004;

// Calls `change` with the file name of each of the job's pictures.
template <class Change>
void EachFileName(host::Job& job, const Change& change) {
  change(job.output.file);
  if (job.output.initial) change(*job.output.initial);
  if (job.input) change(job.input->file);
  if (job.input2) change(job.input2->file);
  if (job.mask) change(job.mask->file);
}

void NameAsSequence(std::string& file) {
  file = std::filesystem::path(file).replace_extension(".####.png").string();
}

bool ShowsTheEffect(const DrawnFrame& frame) {
  return IsRendered(frame) && RenderJobFrame(frame).values != frame.initial.values;
}

// What each animated property of the first frame has at the frames' times.
void SetKeys(const std::vector<NamedFrame>& frames, host::PropertyStore& properties) {
  const host::PropertyStore first = properties;
  for (const Property& property : kProperties) {
    if (!property.IsAnimated() || first.Find(property.guid) == nullptr) continue;
    host::Curve curve;
    for (const NamedFrame& each : frames) {
      const host::Job& job = each.frame.job;
      curve.keys.push_back({job.time, job.properties.ValueAt(property.guid, job.time)});
    }
    properties.Set(property.guid, std::move(curve));
  }
}

HashedSequence Draw(const DrawnFrame& drawn, std::uint64_t index) {
  HashedSequence sequence{Numbered("sequences", index), drawn.job, {}};
  host::Job& job = sequence.job;
  EachFileName(job, NameAsSequence);
  job.frames = host::FrameList(host::FrameRange{0, kFramesOfSequence - 1});
  job.start = 0;
  // A part of the frames lies before the effect's begin or behind its end.
  job.time = differential::Rolls(kTimeSeed, index).Real(-10.0, 10.0);
  job.duration = kFramesOfSequence;
  for (std::int32_t i = 0; i < kFramesOfSequence; ++i) {
    const auto number = static_cast<std::uint64_t>(i);
    DrawnFrame frame = RedrawFrame(drawn, kFrameSeed, index * kFramesOfSequence + number);
    LimitToPng(frame);
    EachFileName(frame.job, [&](std::string& file) {
      NameAsSequence(file);
      file = host::FramePattern(file).FileName(i);
    });
    frame.job.time = job.time + i;
    frame.job.duration = job.duration;
    sequence.frames.push_back({Numbered(sequence.name, number), std::move(frame)});
  }
  SetKeys(sequence.frames, job.properties);
  return sequence;
}

}  // namespace

std::vector<HashedSequence> DrawSequences(std::uint64_t count) {
  std::vector<HashedSequence> sequences;
  for (std::uint64_t index = 0; sequences.size() < count; ++index) {
    DrawnFrame frame = differential::DrawFrame(kSequenceSeed, index, differential::DrawnKinds::All);
    LimitToPng(frame);
    if (ShowsTheEffect(frame)) sequences.push_back(Draw(frame, sequences.size()));
  }
  return sequences;
}

}  // namespace vblur::hashes
