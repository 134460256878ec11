#include "tests/fuzz/JobFuzz.h"

#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <set>
#include <vector>

#include "host/base/Failure.h"
#include "host/hosted/CoordMan.h"
#include "host/hosted/EffectHost.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostedEffect.h"
#include "host/hosted/JobFrame.h"
#include "host/jobs/JobCheck.h"
#include "tests/differential/Rolls.h"
#include "tests/fuzz/FileChecks.h"

namespace vblur::test {
namespace {

using differential::Rolls;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

// Numbers that a job may hold, and with `wild` those that it may not.
double DrawNumber(Rolls& roll, bool wild) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (wild && roll.OneIn(12)) return roll.Of({kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()});
  switch (roll.Whole(0, 5)) {
    case 0: return roll.Of({0.0, -0.0, 1.0, -1.0, 0.5, 100.0, -100.0});
    case 1: return roll.Of({1e300, -1e300, 5e-324, -5e-324, 2.3e-308, 1e-300, 1.7e308, -1.7e308});
    case 2: return roll.Of({2147483647.0, 2147483648.0, -2147483649.0, 4294967296.0, 1e9, -1e9, 1e18, 3.5e38, 1e-40});
    case 3: return roll.Real(-1000.0, 1000.0);
    default: return roll.Real(0.0, 100.0);
  }
}

std::array<double, 2> DrawPair(Rolls& roll, bool wild) {
  const double x = DrawNumber(roll, wild);
  return {x, roll.OneIn(2) ? x : DrawNumber(roll, wild)};
}

std::int32_t DrawWhole(Rolls& roll) {
  switch (roll.Whole(0, 5)) {
    case 0: return roll.Of({kLeast, kLeast + 1, kMost, kMost - 1, kMost - 20, kLeast + 20});
    case 1: return roll.Of({1 << 30, -(1 << 30), 1 << 29, -(1 << 29), (1 << 29) - 1, (1 << 29) - 24, -(1 << 29) - 1});
    case 2: return roll.Of({1 << 24, (1 << 24) + 1, -(1 << 24) - 3, 65536, -65536});
    case 3: return roll.Whole(kLeast, kMost);
    default: return roll.Whole(-30, 30);
  }
}

// Mostly near the picture or near the last pixels that count.
std::int32_t DrawPosition(Rolls& roll) {
  if (roll.OneIn(8)) return DrawWhole(roll);
  return (roll.OneIn(3) ? roll.Of({(1 << 29) - 48, -(1 << 29) + 24}) : 0) + roll.Whole(-24, 24);
}

std::array<std::int32_t, 2> DrawCorner(Rolls& roll) {
  const std::int32_t x = DrawPosition(roll);
  return {x, DrawPosition(roll)};
}

void DrawPlace(Rolls& roll, bool wild, host::ImageRecord& image) {
  if (!roll.OneIn(3)) image.origin = DrawCorner(roll);
  if (roll.OneIn(4)) image.position = DrawPair(roll, wild);
  if (roll.OneIn(4)) image.size = DrawPair(roll, wild);
  // The host wants sizes above 0.
  if (image.size && !roll.OneIn(8)) image.size = {std::abs((*image.size)[0]), std::abs((*image.size)[1])};
  // The host refuses sizes below zero; most jobs should get further.
  if (image.size && !wild) image.size = {std::fabs((*image.size)[0]), std::fabs((*image.size)[1])};
}

host::Curve DrawCurve(Rolls& roll, bool wild) {
  host::Curve curve;
  curve.interpolation = static_cast<host::Interpolation>(roll.Whole(0, 2));
  for (std::int32_t i = roll.Whole(1, 4); i > 0; --i) {
    const host::CurveKey key{DrawNumber(roll, false), DrawNumber(roll, wild)};
    if (curve.keys.empty() || key.time > curve.keys.back().time) curve.keys.push_back(key);
  }
  return curve;
}

void DrawProperties(Rolls& roll, bool wild, host::PropertyStore& store) {
  for (const Property& property : kProperties) {
    if (roll.OneIn(3)) continue;
    const auto last = static_cast<std::int32_t>(property.maximum);
    if (property.control != PropertyControl::Number) {
      // The properties that end the frame early are on less often.
      const bool endsEarly = property.id == PropertyId::DisplayCropped || property.id == PropertyId::BlankCropped;
      store.Set(property.guid, endsEarly && !roll.OneIn(5) ? 0.0 : static_cast<double>(roll.Whole(0, last)));
    } else if (property.IsAnimated() && roll.OneIn(3)) {
      store.Set(property.guid, DrawCurve(roll, wild));
    } else {
      store.Set(property.guid, DrawNumber(roll, wild));
    }
  }
}

host::Region DrawRegion(Rolls& roll) {
  if (roll.OneIn(3)) return {DrawWhole(roll), DrawWhole(roll), DrawWhole(roll), DrawWhole(roll)};
  return {roll.Whole(-30, 30), roll.Whole(-30, 30), roll.Whole(1, 60), roll.Whole(1, 60)};
}

host::FrameList DrawFrames(Rolls& roll) {
  std::vector<std::int32_t> frames;
  std::set<std::int32_t> seen;
  for (std::int32_t i = roll.Whole(1, 5); i > 0; --i) {
    const std::int32_t frame = DrawWhole(roll);
    if (seen.insert(frame).second) frames.push_back(frame);
  }
  return host::FrameList::Of(frames);
}

host::Job DrawJob(Rolls& roll, bool wild) {
  host::Job job;
  job.depth = roll.Of({8, 16, 32});
  job.kind = static_cast<host::EffectKind>(roll.Of({1, 1, 1, 2, 3, 4, 4, 5, 5, 7}));
  job.field = static_cast<host::FieldChoice>(roll.OneIn(2) ? 0 : roll.Whole(0, 3));
  job.output.file = "out.png";
  job.output.width = roll.Whole(1, 24);
  job.output.height = roll.Whole(1, 24);
  DrawPlace(roll, wild, job.output);
  const bool isSame = roll.OneIn(2);
  const auto add = [&](auto& image) {
    image.emplace().file = "in.png";
    DrawPlace(roll, wild, *image);
    if (isSame) image->origin = job.output.origin;
  };
  if (host::NeedsInput(*job.kind) || roll.OneIn(2)) add(job.input);
  if (job.kind == host::EffectKind::Transition || roll.OneIn(8)) add(job.input2);
  if (job.input && (job.kind == host::EffectKind::Paint || roll.OneIn(8))) {
    add(job.mask);
    if (!roll.OneIn(3)) job.mask->offset = DrawCorner(roll);
  }
  if (roll.OneIn(3)) job.roi = DrawRegion(roll);
  if (job.roi && !job.output.initial && roll.OneIn(3)) {
    job.outside = job.input && roll.OneIn(2) ? host::OutsideChoice::Keep : host::OutsideChoice::Clear;
  }
  if (roll.OneIn(2)) job.start = DrawWhole(roll);
  if (roll.OneIn(4)) job.frames = DrawFrames(roll);
  if (roll.OneIn(4)) job.output.renumber = DrawWhole(roll);
  if (!roll.OneIn(3)) job.time = DrawNumber(roll, wild);
  job.duration = DrawNumber(roll, wild);
  if (roll.OneIn(2)) job.project = host::ProjectSizes{DrawPair(roll, wild), DrawPair(roll, wild)};
  if (!job.project) job.projectUnreadable = roll.OneIn(4);
  if (roll.OneIn(3)) job.proxy = DrawPair(roll, wild);
  DrawProperties(roll, wild, job.properties);
  return job;
}

// A picture of random bytes, in memory of exactly its size.
void DrawPicture(Rolls& roll, std::int32_t depth, std::int32_t components, std::int32_t width, std::int32_t height,
                 host::HostImage& image) {
  image.Reset(depth, components, width, height);
  for (std::size_t i = 0; i < image.ByteCount(); ++i)
    image.Row(0)[i] = static_cast<std::byte>(roll.Whole(0, 255));
}

struct DrawnPictures {
  host::HostImage output, input, input2, mask;
  host::FramePictures pictures;

  DrawnPictures(Rolls& roll, const host::Job& job) {
    const auto side = [&](std::int32_t like) { return roll.OneIn(2) ? like : roll.Whole(1, 24); };
    const std::int32_t width = *job.output.width;
    const std::int32_t height = *job.output.height;
    const auto draw = [&](const auto& record, std::int32_t components, host::HostImage& image) {
      if (!record) return false;
      DrawPicture(roll, *job.depth, components, side(width), side(height), image);
      // At times a part of a frame, or more than it.
      if (roll.OneIn(4)) image.PutInFrame({DrawPosition(roll), DrawPosition(roll)}, {side(width), side(height)});
      image.Place(*record);
      return true;
    };
    DrawPicture(roll, *job.depth, 4, width, height, output);
    output.Place(job.output);
    pictures.output = &output;
    if (draw(job.input, 4, input)) pictures.input = &input;
    if (draw(job.input2, 4, input2)) pictures.input2 = &input2;
    if (draw(job.mask, 1, mask)) pictures.mask = &mask;
    if (job.mask) pictures.maskOffset = job.mask->offset;
  }
};

// The render call alone, as a host may make it that checks nothing.
void RenderUnchecked(Blur& effect, const host::Job& job, DrawnPictures& drawn, IDSEffectHost* host) {
  effect.SetEffectHost(host);
  effect.SetField(static_cast<std::int32_t>(job.field));
  effect.SetOutput(&drawn.output);
  effect.SetInput(job.input ? &drawn.input : nullptr);
  effect.SetInput2(job.input2 ? &drawn.input2 : nullptr);
  const auto& offset = drawn.pictures.maskOffset;
  effect.SetPixelMask(job.mask ? &drawn.mask : nullptr, offset[0], offset[1]);
  effect.RenderFrame(job.time);
  effect.SetOutput(nullptr);
  effect.SetInput(nullptr);
  effect.SetInput2(nullptr);
  effect.SetPixelMask(nullptr, 0, 0);
  effect.SetEffectHost(nullptr);
}

}  // namespace

void JobFuzz::Render(std::uint64_t index) {
  Rolls roll(seed_, index);
  const bool wild = index % 2 != 0;
  host::Job job = DrawJob(roll, wild);
  if (!effect_ || roll.OneIn(4)) effect_ = ComPtr<Blur>::Own(new Blur());
  host::HostedEffect hosted(effect_.As<IDSImageEffect>());
  hosted.SetRenderThreads(roll.Whole(1, 3));
  const host::CoordMan coordMan(job.proxy);
  host::ExecuteContext context;
  if (roll.OneIn(10)) context.StopAfterPolls(roll.Whole(0, 60));
  try {
    if (!wild) {
      host::CheckValues(job);
      job = Refiled(job);
    }
    DrawnPictures drawn(roll, job);
    hosted.SetUp(job, const_cast<host::CoordMan&>(coordMan), context);
    const double time = host::FrameTime(job, DrawWhole(roll));
    if (wild) {
      host::EffectHost project(host::ProjectOf(job, drawn.output));
      RenderUnchecked(*effect_, job, drawn, &project);
    } else {
      host::RenderFields(hosted, job, drawn.pictures, time, context, [] {});
    }
    ++(hosted.WhyNotRendered().empty() ? counts_.rendered : counts_.refusedByEffect);
  } catch (const host::Failure&) {
    ++counts_.refusedByHost;
  } catch (const std::bad_alloc&) {
    ++counts_.outOfMemory;
  }
}

}  // namespace vblur::test
