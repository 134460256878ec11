#include "fuzz.h"

#include "arithmetic.h"
#include "colour_pictures.h"
#include "copy.h"
#include "filter.h"
#include "sharpen.h"

namespace model {
namespace {

using Channels = std::array<bool, 4>;

constexpr Channels kAlphaOnly{false, false, false, true};

/// Channels that the filter selects, by mode; in the YUV modes of the YUV picture.
Channels SelectedBy(int mode) {
  switch (mode) {
    case kFuzzAlpha: return kAlphaOnly;
    case kFuzzRgb: return {true, true, true, false};
    case kFuzzGrey:
    case kFuzzRed:
    case kFuzzLuminance: return {true, false, false, false};
    case kFuzzGreen:
    case kFuzzU: return {false, true, false, false};
    case kFuzzBlue:
    case kFuzzV: return {false, false, true, false};
    case kFuzzChroma: return {false, true, true, false};
    default: return {true, true, true, true};
  }
}

FilterSettings SettingsOf(const FuzzJob& job, Depth depth, const Window& window) {
  FilterSettings settings;
  settings.depth = depth;
  settings.sizeX = job.sizeX;
  settings.sizeY = job.sizeY;
  settings.aspect = job.aspect;
  settings.channels = SelectedBy(job.mode);
  settings.window = window;
  return settings;
}

/// Filters the frame's own pixels, then copies the other channels from the source: within the window, with RGB over the
/// whole target.
bool Direct(const FuzzJob& job, Picture& target, const Window& window) {
  const FilterSettings settings = SettingsOf(job, job.depth, window);
  if (!Filter(job.source, target, settings)) return false;
  Channels rest{};
  for (std::size_t c = 0; c < 4; ++c)
    rest[c] = !settings.channels[c];
  CopyChannels(job.source, target, rest, job.mode == kFuzzRgb ? WholeWindow(target) : window);
  return true;
}

/// A zeroed picture at the target's place, with the source's edge methods.
Picture Companion(const Picture& target, const Picture& source) {
  return Blank(WholeAxis(target.x.size, target.x.writeOrigin, source.x.edge),
               WholeAxis(target.y.size, target.y.writeOrigin, source.y.edge));
}

/// What the filter may read around the window, clipped to the target.
Window ReadWindow(const FuzzJob& job, const Picture& target, const Window& window) {
  const int x = Add(Multiply(Truncate(job.sizeX), 3), 6);
  const int y = Add(Multiply(Truncate(job.sizeY), 3), 6);
  return Settle(Widen(window, x, y), target);
}

/// Grey is the source's red.
bool ThroughGrey(const FuzzJob& job, Picture& target, const Window& window) {
  Picture grey = Companion(target, job.source);
  ExtractRed(job.source, grey, ReadWindow(job, target, window));
  if (!Filter(grey, grey, SettingsOf(job, Depth::Wide, window))) return false;
  GreyToRgb(grey, target, job.depth, window);
  CopyChannels(job.source, target, kAlphaOnly, window);
  return true;
}

/// Floats: the red of the source itself is filtered, then spread.
bool ThroughRed(const FuzzJob& job, Picture& target, const Window& window) {
  const Picture source = job.source;
  if (!Filter(source, target, SettingsOf(job, Depth::Float, window))) return false;
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x) {
      Pixel& to = Target(target, x, y);
      to = {to[0], to[0], to[0], to[3]};
    }
  }
  CopyChannels(source, target, kAlphaOnly, window);
  return true;
}

/// Floats: the filter reads the YUV of the whole source. Alpha is copied from the source over the whole target.
bool ByChangeOfYuv(const FuzzJob& job, Picture& target, const Window& window) {
  Picture yuv = job.source;
  yuv.outside = YuvPixel(yuv.outside, Depth::Float);
  for (Pixel& pixel : yuv.pixels)
    pixel = YuvPixel(pixel, Depth::Float);
  Picture filtered = Companion(target, job.source);
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x)
      Target(filtered, x, y) = At(yuv, x, y);
  }
  if (!Filter(yuv, filtered, SettingsOf(job, Depth::Float, window))) return false;
  ChangeYuv(job.source, filtered, target, window);
  CopyChannels(job.source, target, kAlphaOnly, WholeWindow(target));
  return true;
}

void MoveTo(Picture& picture, int x, int y) {
  picture.x.origin = picture.x.writeOrigin = x;
  picture.y.origin = picture.y.writeOrigin = y;
}

/// Filters the YUV picture at (0, 0). Alpha is copied from the source over the whole target.
bool ThroughYuv(const FuzzJob& job, Picture& target, const Window& window) {
  Picture yuv = Companion(target, job.source);
  RgbToYuv(job.source, yuv, job.depth, ReadWindow(job, target, window));
  const int x = target.x.writeOrigin;
  const int y = target.y.writeOrigin;
  MoveTo(yuv, 0, 0);
  const Window moved{window.x1 - x, window.y1 - y, window.x2 - x, window.y2 - y};
  if (!Filter(yuv, yuv, SettingsOf(job, Depth::Wide, moved))) return false;
  MoveTo(yuv, x, y);
  YuvToRgb(yuv, target, job.depth, window);
  CopyChannels(job.source, target, kAlphaOnly, WholeWindow(target));
  return true;
}

bool BlurBy(const FuzzJob& job, Picture& target, const Window& window) {
  switch (job.mode) {
    case kFuzzAll:
    case kFuzzAlpha:
    case kFuzzRgb:
    case kFuzzRed:
    case kFuzzGreen:
    case kFuzzBlue: return Direct(job, target, window);
    case kFuzzGrey:
      return job.depth == Depth::Float ? ThroughRed(job, target, window) : ThroughGrey(job, target, window);
    case kFuzzLuminance:
    case kFuzzU:
    case kFuzzV:
    case kFuzzChroma:
      return job.depth == Depth::Float ? ByChangeOfYuv(job, target, window) : ThroughYuv(job, target, window);
    default: return true;
  }
}

}  // namespace

Picture Fuzz(const FuzzJob& asked, bool* outOfMemory) {
  FuzzJob job = asked;
  if (job.depth == Depth::Float) {
    if (!(job.sizeX >= 0.0f)) job.sizeX = 0.0f;
    if (!(job.sizeY >= 0.0f)) job.sizeY = 0.0f;
  }
  Picture target = job.target;
  if (outOfMemory != nullptr) *outOfMemory = false;
  if (IsEmpty(target)) return target;
  const Window window = Settle(job.window, target);
  if (!BlurBy(job, target, window)) {
    if (outOfMemory != nullptr) *outOfMemory = true;
    return target;
  }
  if (job.method == kFuzzSharpen) Sharpen(job.source, target, job.depth, window);
  return target;
}

}  // namespace model
