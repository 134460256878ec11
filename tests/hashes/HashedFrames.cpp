#include "tests/hashes/HashedFrames.h"

#include <utility>

#include "host/base/Failure.h"
#include "host/hosted/CoordMan.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/JobFrame.h"
#include "host/hosted/LinearLight.h"
#include "host/hosted/Premultiply.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "tests/differential/EffectRun.h"
#include "tests/differential/PngLimits.h"
#include "tests/golden/GoldenJobs.h"
#include "tests/support/TestServer.h"

namespace vblur::hashes {
namespace {

using differential::DrawnFrame;
using differential::DrawnPicture;

constexpr std::uint64_t kRandomSeed = 20000;
constexpr std::uint64_t kFilesSeed = 20001;
constexpr std::uint64_t kFloatsSeed = 20005;

DrawnPicture Empty(const host::Job& job, const std::optional<DrawnPicture>& input) {
  DrawnPicture picture;
  picture.width = job.output.width.value_or(input ? input->width : 0);
  picture.height = job.output.height.value_or(input ? input->height : 0);
  picture.values.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * 4);
  return picture;
}

DrawnFrame GoldenFrame(const std::filesystem::path& file, const GoldenPicture& picture) {
  DrawnFrame frame;
  host::Job& job = frame.job;
  job = host::ReadJobFile(file);
  if (!job.depth || job.frames) host::Refuse(file.string(), "expected one frame with a depth");
  job.depth = job.RenderDepth();
  const auto load = [&](const std::string& name, std::int32_t components) {
    return picture(name, *job.depth, components);
  };
  if (job.input) frame.input = load(job.input->file, 4);
  if (job.input2) frame.input2 = load(job.input2->file, 4);
  if (job.mask) frame.mask = load(job.mask->file, 1);
  frame.initial = job.output.initial ? load(*job.output.initial, 4) : Empty(job, frame.input);
  return frame;
}

// From the colours of files of the sRGB transfer function to those that are rendered.
void Convert(const host::Job& job, host::HostImage& image) {
  if (job.linear) host::DecodeColours(image, image.AllRows(), false);
  if (job.premultipliesAround) host::MultiplyByAlpha(image, image.AllRows());
}

}  // namespace

std::string Numbered(const std::string& set, std::uint64_t index) {
  const std::string number = std::to_string(index);
  return set + "/" + std::string(number.size() < 4 ? 4 - number.size() : 0, '0') + number;
}

bool IsRendered(const DrawnFrame& frame) {
  try {
    host::CheckJob(frame.job);
    RenderJobFrame(frame);
    return true;
  } catch (const host::Failure&) {
    return false;
  }
}

std::vector<NamedFrame> GoldenFrames(const std::filesystem::path& folder, const GoldenPicture& picture) {
  std::vector<NamedFrame> frames;
  for (const std::filesystem::path& job : golden::GoldenJobs(folder))
    frames.push_back({"golden/" + job.stem().string(), GoldenFrame(job, picture)});
  return frames;
}

NamedFrame RandomFrame(std::uint64_t index) {
  return {Numbered("random", index), differential::DrawFrame(kRandomSeed, index, differential::DrawnKinds::All)};
}

NamedFrame FloatFrame(std::uint64_t index) {
  using namespace differential;
  return {Numbered("floats", index), DrawFrame(kFloatsSeed, index, DrawnKinds::All, DrawnDepths::Floats)};
}

std::vector<NamedFrame> FramesInFiles(std::vector<NamedFrame> golden, std::uint64_t count) {
  std::vector<NamedFrame> frames = std::move(golden);
  const std::size_t wanted = frames.size() + count;
  for (std::uint64_t index = 0; frames.size() < wanted; ++index) {
    DrawnFrame frame = differential::DrawFrame(kFilesSeed, index, differential::DrawnKinds::All);
    if (IsRendered(frame)) frames.push_back({Numbered("random", index), std::move(frame)});
  }
  for (NamedFrame& each : frames) {
    each.name = "files/" + each.name;
    differential::LimitToPng(each.frame);
  }
  return frames;
}

DrawnPicture RenderJobFrame(const DrawnFrame& frame) {
  differential::HostedPictures held(frame);
  if (held.input) Convert(frame.job, *held.input);
  if (held.input2) Convert(frame.job, *held.input2);
  if (frame.job.output.initial) Convert(frame.job, held.output);
  host::FramePictures pictures = held.Borrowed();
  pictures.encodesColours = frame.job.linear && held.input;
  host::CoordMan coordMan(frame.job.proxy);
  host::ExecuteContext context;
  // Last: destroyed before what it borrows.
  host::HostedEffect effect(MakeEffect());
  effect.SetUp(frame.job, coordMan, context);
  const HRESULT result = RenderFields(effect, frame.job, pictures, frame.job.time, context, [] {});
  if (result != kOk || !effect.WhyNotRendered().empty()) {
    throw host::Failure(host::ExitCode::SomeFramesFailed, "the effect cannot render the frame");
  }
  return differential::FromHostImage(held.output);
}

}  // namespace vblur::hashes
