#include "frame.h"

#include "arithmetic.h"
#include "blur_size.h"
#include "copy.h"
#include "crop.h"
#include "fuzz.h"
#include "masks.h"
#include "mix_back.h"
#include "place.h"
#include "transition.h"

namespace model {
namespace {

/// The state of the frame, shared by its stages.
struct Frame {
  const FrameJob& job;
  Crop crop;
  TransitionState transition;
  Place inputPlace;
  Place input2Place;
  Window region;     ///< in rows of a whole picture
  float fieldScale;  ///< 0.5 for a field
  bool stopped = false;
  bool alphaAffected = true;
};

Window RegionOf(const FrameJob& job, const Place& input) {
  Window region{0, 0, job.output.picture.x.size - 1, job.output.picture.y.size - 1};
  if (job.region) {
    region.x1 = job.region->x;
    region.y1 = job.region->y;
    region.x2 = Subtract(Add(job.region->x, job.region->width), 1);
    region.y2 = Subtract(Add(job.region->y, job.region->height), 1);
  }
  const int x = job.input ? input.originX : job.output.origin[0];
  const int y = job.input ? input.originY : job.output.origin[1];
  return {Add(region.x1, x), Add(region.y1, y), Add(region.x2, x), Add(region.y2, y)};
}

Frame Prepare(const FrameJob& job) {
  Frame frame{job, CropOf(job.properties), {}, {}, {}, {}, 1.0f};
  frame.inputPlace = PlaceOf(job.input, job.project);
  frame.input2Place = PlaceOf(job.input2, job.project);
  frame.region = RegionOf(job, frame.inputPlace);
  if (job.field != 0) frame.fieldScale = 0.5f;
  if (job.kind == kTransition) frame.transition = TransitionAt(job.properties, job.time, job.duration);
  return frame;
}

/// The region in rows of the frame or field. The stages after the filter always work inside it.
Window RegionWindow(const Frame& frame) {
  const auto row = [&](int y) { return Truncate(static_cast<float>(y) * frame.fieldScale); };
  return {frame.region.x1, row(frame.region.y1), frame.region.x2, row(frame.region.y2)};
}

/// The window of filter and blanking: none unless the job has a region.
std::optional<Window> AskedWindow(const Frame& frame) {
  if (!frame.job.region) return std::nullopt;
  if (frame.job.field == 0) return frame.region;
  return Window{frame.region.x1, frame.region.y1 / 2, frame.region.x2, frame.region.y2 / 2};
}

int ModeOf(int channels) {
  constexpr int kModes[] = {kFuzzRgb,   kFuzzAll,       kFuzzGrey,   kFuzzRed, kFuzzGreen, kFuzzBlue,
                            kFuzzAlpha, kFuzzLuminance, kFuzzChroma, kFuzzU,   kFuzzV};
  return channels < 0 || channels > 10 ? static_cast<int>(kFuzzAll) : kModes[channels];
}

bool WritesAlpha(int channels) {
  return ModeOf(channels) == kFuzzAll || ModeOf(channels) == kFuzzAlpha;
}

MixSettings MixSettingsOf(const FrameJob& job) {
  MixSettings settings;
  settings.depth = job.depth;
  settings.method = job.properties.mixBack;
  settings.blend = static_cast<float>(Limit(job.properties.blend, 0.0, 100.0));
  settings.effectGain = static_cast<float>(job.properties.effectGain);
  settings.sourceGain = static_cast<float>(job.properties.sourceGain);
  return settings;
}

/// Filters from source to destination and mixes back, except in a transition.
void RunBlurStage(Frame& frame, Picture& destination, const Picture& source, float transitionScale) {
  const FrameJob& job = frame.job;
  if (!WritesAlpha(job.properties.channels)) frame.alphaAffected = false;
  const BlurSize size = BlurSizeOf(job, transitionScale, frame.fieldScale);
  FuzzJob fuzz;
  fuzz.depth = job.depth;
  // An absent source is filtered without the crop's edge methods and colour.
  if (source.hasMemory) fuzz.source = source;
  fuzz.target = destination;
  fuzz.window = AskedWindow(frame);
  fuzz.mode = ModeOf(job.properties.channels);
  fuzz.method = job.properties.method;
  fuzz.sizeX = size.x;
  fuzz.sizeY = size.y;
  destination = Fuzz(fuzz, &frame.stopped);
  if (frame.stopped || job.kind == kTransition || IsEmpty(destination)) return;
  MixBack(MixSettingsOf(job), source, destination, Settle(RegionWindow(frame), destination));
}

/// Clips that share a geometry are mixed first and blurred once.
bool TakesTwoPasses(const Frame& frame) {
  const Place& a = frame.inputPlace;
  const Place& b = frame.input2Place;
  const bool same = a.originX == b.originX && a.originY == b.originY && a.width == b.width && a.height == b.height;
  return !same || frame.job.properties.effectScaling == kCrossFade;
}

/// The picture with the box reset to all of it; the edge methods are unchanged.
Picture Uncropped(Picture picture) {
  SetBounds(picture.x, 0, picture.x.size);
  SetBounds(picture.y, 0, picture.y.size);
  return picture;
}

void OnePass(Frame& frame, Picture& output, const Picture& first, const Picture& second) {
  Picture mixed = Blank(first.x, first.y);
  if (!IsEmpty(mixed)) {
    const Picture wholeFirst = Uncropped(first);
    MixPictures(frame.job.depth, frame.transition.mix, Uncropped(second), &wholeFirst, mixed,
                Settle(RegionWindow(frame), mixed));
  }
  RunBlurStage(frame, output, mixed, frame.transition.scale);
}

void SecondPass(Frame& frame, Picture& output, const Picture& second) {
  const float scale = frame.job.properties.effectScaling == kCrossFade
                          ? CrossedScale(frame.job.properties, frame.transition)
                          : frame.transition.scale;
  Picture blurred = Blank(output.x, output.y);
  RunBlurStage(frame, blurred, second, scale);
  if (frame.stopped || IsEmpty(output)) return;
  MixPictures(frame.job.depth, frame.transition.mix, Uncropped(blurred), nullptr, output,
              Settle(RegionWindow(frame), output));
}

/// Copies channels whose mask is off from the uncropped source.
void RestoreChannels(const Frame& frame, Picture& output, Picture& source) {
  const Properties& p = frame.job.properties;
  const std::array<bool, 4> restored{p.maskRed == 0, p.maskGreen == 0, p.maskBlue == 0,
                                     p.maskAlpha == 0 && frame.alphaAffected};
  if (restored == std::array<bool, 4>{}) return;
  source = Uncropped(source);
  CopyChannels(source, output, restored, Settle(RegionWindow(frame), output));
}

void ApplyPaintMask(const Frame& frame, Picture& output, const Picture& source, const Picture& mask) {
  Picture whole = Uncropped(source);
  whole.x.edge = whole.y.edge = kColour;
  ApplyMask(frame.job.depth, whole, mask, output, Settle(RegionWindow(frame), output));
}

void BlankCropped(const Frame& frame, Picture& output, const Picture& source) {
  if (frame.job.properties.blankCropped == 0 || IsEmpty(output)) return;
  BlankOutside(output, CropRectangle(source, frame.crop), Settle(AskedWindow(frame), output));
}

Picture Cropped(const std::optional<FrameImage>& image, const Frame& frame) {
  Picture picture;
  if (image) picture = View(image->picture, image->origin[0], image->origin[1], frame.job.field);
  ApplyCrop(picture, frame.crop, frame.job.depth);
  return picture;
}

Picture MaskOf(const Frame& frame) {
  const FrameJob& job = frame.job;
  if (!job.mask) return {};
  return View(*job.mask, Add(job.maskOffset[0], frame.inputPlace.originX),
              Add(job.maskOffset[1], frame.inputPlace.originY), job.field);
}

void RunStages(Frame& frame, Picture& output) {
  const FrameJob& job = frame.job;
  Picture source = Cropped(job.input, frame);
  const Picture second = Cropped(job.input2, frame);
  if (job.properties.displayCropped != 0) {
    CopyPicture(source, output, Settle(AskedWindow(frame), output));
    BlankCropped(frame, output, source);
    return;
  }
  const bool transition = job.kind == kTransition;
  const bool twoPasses = transition && TakesTwoPasses(frame);
  if (transition && !twoPasses)
    OnePass(frame, output, source, second);
  else
    RunBlurStage(frame, output, source, frame.transition.scale);
  if (!frame.stopped && twoPasses) SecondPass(frame, output, second);
  if (frame.stopped) return;
  if (!transition && job.kind != kGenerator) RestoreChannels(frame, output, source);
  if (job.kind == kPaint) ApplyPaintMask(frame, output, source, MaskOf(frame));
  BlankCropped(frame, output, source);
}

}  // namespace

Picture RenderFrame(const FrameJob& job) {
  Frame frame = Prepare(job);
  Picture result = job.output.picture;
  Picture output = View(result, job.output.origin[0], job.output.origin[1], job.field);
  RunStages(frame, output);
  PutBack(output, result, job.field);
  return result;
}

}  // namespace model
