#include "blur/FuzzSampler.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "blur/ChannelExtractor.h"
#include "blur/ExactBox.h"
#include "blur/FloatChannels.h"
#include "blur/GaussFilter.h"
#include "blur/GreyToRGBSampler.h"
#include "blur/RGBToYUVSampler.h"
#include "blur/SharedMemory.h"
#include "blur/SubtractCombiner.h"
#include "blur/YUVToRGBSampler.h"
#include "image/ChannelCopySampler.h"
#include "image/RowBand.h"
#include "image/SimpleCopySampler.h"

namespace vblur {
namespace {

// The rows of a texture, in image coordinates, that a filter of this radius may read for the rows from y1 to y2 - 1.
HvSpan rowsRead(const HvTexAxis& rows, std::int32_t y1, std::int32_t y2, float radius) {
  // Three boxes, with a row to spare each; a float of this size is a whole number of rows in 64 bits.
  const std::int64_t margin = 3 * (static_cast<std::int64_t>(std::min(radius, 1e9f)) + 3);
  std::int64_t first = std::int64_t{y1} - margin - rows.originI;
  std::int64_t last = std::int64_t{y2} - 1 + margin - rows.originI;
  const std::int64_t lo = rows.lo;
  const std::int64_t hi = rows.hi;
  const bool readsBelow = first < lo;
  const bool readsAbove = last > hi;
  if (rows.edgeMethod == kEdgeWrap && (readsBelow || readsAbove)) {
    first = lo;
    last = hi;
  }
  if (rows.edgeMethod == kEdgeReflect) {
    const std::int64_t mirroredBelow = 2 * lo - 1 - first;
    const std::int64_t mirroredAbove = 2 * hi + 1 - last;
    if (readsBelow) last = std::max(last, mirroredBelow);
    if (readsAbove) first = std::min(first, mirroredAbove);
  }
  return {static_cast<std::int32_t>(std::clamp(first, lo, hi) + rows.originI),
          static_cast<std::int32_t>(std::clamp(last, lo, hi) + 1 + rows.originI)};
}

}  // namespace

template <class Pixel, class Accum, std::int32_t Max>
void FuzzSampler<Pixel, Accum, Max>::preProcess(Texture* in, Texture* out) {
  switch (mode) {
    case kFuzzRGBA: return filterDirectly<1, 1, 1, 1>(in, out);
    case kFuzzAlpha: return filterDirectly<0, 0, 0, 1>(in, out);
    case kFuzzRGB: return filterDirectly<1, 1, 1, 0>(in, out);
    case kFuzzGrey: return filterGrey(in, out);
    case kFuzzRed: return filterDirectly<1, 0, 0, 0>(in, out);
    case kFuzzGreen: return filterDirectly<0, 1, 0, 0>(in, out);
    case kFuzzBlue: return filterDirectly<0, 0, 1, 0>(in, out);
    case kFuzzLuminance: return filterYuv<1, 0, 0>(in, out);
    case kFuzzU: return filterYuv<0, 1, 0>(in, out);
    case kFuzzV: return filterYuv<0, 0, 1>(in, out);
    case kFuzzChroma: return filterYuv<0, 1, 1>(in, out);
    default: return;
  }
}

template <class Pixel, class Accum, std::int32_t Max>
void FuzzSampler<Pixel, Accum, Max>::postProcess(Texture* in, Texture* out) {
  if (poll(this->interrupt) != 0 || method != kFuzzSharpen) return;
  SubtractCombiner<Pixel, Accum, Max> combiner;
  combiner.runLike(*this);
  combiner.copyWindow(*this);
  const std::int32_t originX = truncToInt(out->horizontal.originF);
  const std::int32_t originY = truncToInt(out->vertical.originF);
  // The result is read where it is written.
  out->setOrigin(out->horizontal.writeOrigin, out->vertical.writeOrigin);
  combiner.process(in, out, out);
  out->setOrigin(originX, originY);
}

template <class Pixel, class Accum, std::int32_t Max>
template <class Filter>
void FuzzSampler<Pixel, Accum, Max>::setUp(Filter& filter) const {
  filter.runLike(*this);
  filter.copyWindow(*this);
  filter.sizeX = settled(sizeX);
  filter.sizeY = settled(sizeY);
  filter.aspect = this->aspect;
  filter.inverseAspect = this->inverseAspect;
  filter.keepsIntermediate = false;
}

template <class Pixel, class Accum, std::int32_t Max>
float FuzzSampler<Pixel, Accum, Max>::settled(float size) {
  if constexpr (Pixel::kIntegral) {
    return size;
  } else {
    return exactRadius(size);
  }
}

template <class Pixel, class Accum, std::int32_t Max>
template <int R, int G, int B, int A>
void FuzzSampler<Pixel, Accum, Max>::copyChannelsOf(Texture* in, Texture* out, bool inWindow) {
  ChannelCopySampler<Pixel, Accum, R, G, B, A> copy;
  copy.runLike(*this);
  if (inWindow) copy.copyWindow(*this);
  copy.process(in, out);
}

template <class Pixel, class Accum, std::int32_t Max>
template <int R, int G, int B, int A>
void FuzzSampler<Pixel, Accum, Max>::filterDirectly(Texture* in, Texture* out) {
  BlurRGBAGauss<Pixel, Accum, Max, R, G, B, A> filter;
  setUp(filter);
  // With kFuzzRGB alpha is copied over the whole picture, whatever the window.
  const bool copiesBeyond = mode == kFuzzRGB && !coversTarget(*this, *out);
  const bool filterCopies = boxesKeepRange() && !copiesBeyond && !shareMemory(*in, *out);
  filter.keepsOthers = filterCopies;
  filter.process(in, out);
  if constexpr (!ChannelMask<R, G, B, A>::kAll) {
    if (!filterCopies) copyChannelsOf<1 - R, 1 - G, 1 - B, 1 - A>(in, out, mode != kFuzzRGB);
  }
}

// A plane of the target's size and place, with the source's edge methods. It is not cleared where the reader will fill
// all of it.
template <class Pixel, class Accum, std::int32_t Max>
template <class Plane>
bool FuzzSampler<Pixel, Accum, Max>::makePlane(Plane& plane, const Imager& reader, const Texture& in,
                                               const Texture& out) {
  plane.horizontal.setSize(this->mapWidth);
  plane.vertical.setSize(this->mapHeight);
  plane.allocateScratch(!coversTarget(reader, out));
  if (plane.data == nullptr) {
    stopForRefusedMemory(this->interrupt);
    return false;
  }
  plane.setWriteOrigin(out.horizontal.writeOrigin, out.vertical.writeOrigin);
  plane.setOrigin(out.horizontal.writeOrigin, out.vertical.writeOrigin);
  plane.setEdgeMethods(in.horizontal.edgeMethod, in.vertical.edgeMethod);
  return true;
}

template <class Pixel, class Accum, std::int32_t Max>
bool FuzzSampler<Pixel, Accum, Max>::coversTarget(const Imager& window, const Texture& out) const {
  const std::int64_t left = out.horizontal.writeOrigin;
  const std::int64_t top = out.vertical.writeOrigin;
  return window.x1 <= left && window.y1 <= top && window.x2 >= left + this->mapWidth &&
         window.y2 >= top + this->mapHeight;
}

// Planes are filled this far around the window, so that the filter reads real pixels there.
template <class Pixel, class Accum, std::int32_t Max>
template <class Reader>
void FuzzSampler<Pixel, Accum, Max>::widenWindow(Reader& reader) const {
  const std::int32_t mx = wrapAdd(wrapMul(truncToInt(settled(sizeX)), 3), 6);
  const std::int32_t my = wrapAdd(wrapMul(truncToInt(settled(sizeY)), 3), 6);
  reader.copyWindow(*this);
  reader.x1 = wrapSub(reader.x1, mx);
  reader.y1 = wrapSub(reader.y1, my);
  reader.x2 = wrapAdd(reader.x2, mx);
  reader.y2 = wrapAdd(reader.y2, my);
}

template <class Pixel, class Accum, std::int32_t Max>
bool FuzzSampler<Pixel, Accum, Max>::boxesKeepRange() const {
  return sizeX / this->aspect >= 0.0f && sizeY >= 0.0f;
}

template <class Pixel, class Accum, std::int32_t Max>
void FuzzSampler<Pixel, Accum, Max>::filterGrey(Texture* in, Texture* out) {
  if constexpr (Pixel::kIntegral) {
    using OneComponent = std::conditional_t<std::is_same_v<Pixel, R8>, C8, C16>;
    if (!boxesKeepRange()) return filterGreyIn<HvTexture<int, int>>(in, out);
    filterGreyIn<HvTexture<OneComponent, Ci>>(in, out);
  } else {
    filterFloatGrey(in, out);
  }
}

template <class Pixel, class Accum, std::int32_t Max>
template <class Plane>
void FuzzSampler<Pixel, Accum, Max>::filterGreyIn(Texture* in, Texture* out) {
  using Grey = typename Plane::Pixel;
  ChannelExtractor<Texture, Plane, Pixel, Grey, 0> extractor;
  extractor.runLike(*this);
  widenWindow(extractor);
  Plane plane;
  if (!makePlane(plane, extractor, *in, *out)) return;
  extractor.process(in, &plane);

  BlurGeneralGauss<Grey, typename Plane::Accum, Max, 1, 0, 0, 0> filter;
  setUp(filter);
  filter.process(&plane, &plane);

  GreyToRGBSampler<Plane, Texture, Grey, Pixel, Max> spreader;
  spreader.runLike(*this);
  spreader.copyWindow(*this);
  spreader.process(&plane, out);

  copyChannelsOf<0, 0, 0, 1>(in, out, true);
}

// Without a plane of the target's size, whose ends would be the ends of the picture.
template <class Pixel, class Accum, std::int32_t Max>
void FuzzSampler<Pixel, Accum, Max>::filterFloatGrey(Texture* in, Texture* out) {
  const bool keepsAlpha = shareMemory(*in, *out);
  Texture alpha;
  if (keepsAlpha) {
    if (!makePlane(alpha, *this, *in, *out)) return;
    SimpleCopySampler<Pixel, Accum> copy;
    copy.runLike(*this);
    copy.copyWindow(*this);
    copy.process(in, &alpha);
  }
  BlurRGBAGauss<Pixel, Accum, Max, 1, 0, 0, 0> filter;
  setUp(filter);
  filter.process(in, out);
  if (poll(this->interrupt) != 0) return;
  RedSpreader spreader;
  spreader.interrupt = this->interrupt;
  spreader.copyWindow(*this);
  spreader.process(out);
  copyChannelsOf<0, 0, 0, 1>(keepsAlpha ? &alpha : in, out, true);
}

// YUV of 8 bits always fits 8 bits. At 16 bits V does not fit where red is bright and the others are far below zero,
// which is rare: then the chain runs again with a plane of 32 bits.
template <class Pixel, class Accum, std::int32_t Max>
template <int Y, int U, int V>
void FuzzSampler<Pixel, Accum, Max>::filterYuv(Texture* in, Texture* out) {
  if constexpr (Pixel::kIntegral) {
    if (boxesKeepRange() && filterYuvIn<Texture, Y, U, V>(in, out)) return;
    filterYuvIn<HvTexture<Ri, Ri>, Y, U, V>(in, out);
  } else {
    filterFloatYuv<Y, U, V>(in, out);
  }
}

// The filter reads the YUV of the source, so that results near the ends of a target are those of a larger one. Only the
// rows that it reads for the window are converted, so that all bands of a large picture together convert little more
// than the picture; memory that is not written takes none. The colours change by what the filter changes in their YUV.
template <class Pixel, class Accum, std::int32_t Max>
template <int Y, int U, int V>
void FuzzSampler<Pixel, Accum, Max>::filterFloatYuv(Texture* in, Texture* out) {
  Texture source;
  source.cloneShape(*in);
  Texture filtered;
  if (source.allocationFailed != 0) return stopForRefusedMemory(this->interrupt);
  if (!makePlane(filtered, *this, *in, *out)) return;
  source.setOutsideColour(yuvOf(in->outsideColour));
  source.setWriteOrigin(in->horizontal.originI, in->vertical.originI);
  if (source.hasPixels()) {
    RfToYUVSampler forward;
    forward.runLike(*this);
    const HvTexAxis& columns = in->horizontal;
    const HvSpan rows = rowsRead(in->vertical, this->y1, this->y2, settled(sizeY));
    forward.setWindow(columns.originI + columns.lo, rows.first, columns.originI + columns.hi, rows.last - 1);
    forward.process(in, &source);
  }

  BlurRGBAGauss<Pixel, Accum, Max, Y, U, V, 0> filter;
  setUp(filter);
  filter.keepsOthers = true;
  filter.process(&source, &filtered);
  if (poll(this->interrupt) != 0) return;

  // The colours are read again while the target is written.
  Texture kept;
  if (shareMemory(*in, *out)) {
    if (!makePlane(kept, *this, *in, *out)) return;
    SimpleCopySampler<Pixel, Accum> copy;
    copy.runLike(*this);
    copy.copyWindow(*this);
    copy.process(in, &kept);
  }
  YUVChangeCombiner backward;
  backward.runLike(*this);
  backward.copyWindow(*this);
  backward.process(kept.hasPixels() ? &kept : in, &filtered, out);
  if (!coversTarget(*this, *out)) copyChannelsOf<0, 0, 0, 1>(in, out, false);
}

// False, and the target is unchanged, when the plane's pixels cannot hold the picture's YUV.
template <class Pixel, class Accum, std::int32_t Max>
template <class Plane, int Y, int U, int V>
bool FuzzSampler<Pixel, Accum, Max>::filterYuvIn(Texture* in, Texture* out) {
  using YuvPixel = typename Plane::Pixel;
  RGBToYUVSampler<Texture, Plane, Pixel, Accum, Max> forward;
  forward.runLike(*this);
  widenWindow(forward);
  Plane plane;
  if (!makePlane(plane, forward, *in, *out)) return true;
  forward.process(in, &plane);
  if (!forward.allFit()) return false;
  if (!filterPlane<BlurRGBAGauss<YuvPixel, typename Plane::Accum, Max, Y, U, V, 0>>(plane, *out)) return true;

  YUVToRGBSampler<Plane, Texture, YuvPixel, Pixel, Max> backward;
  backward.runLike(*this);
  backward.copyWindow(*this);
  backward.process(&plane, out);

  // Alpha has been converted with the plane if it covers the target and the source is unchanged.
  const bool hasAlpha = coversTarget(forward, *out) && coversTarget(*this, *out) && !shareMemory(*in, *out);
  if (!hasAlpha) copyChannelsOf<0, 0, 0, 1>(in, out, false);
  return true;
}

// False when the filter was stopped: the plane is incomplete.
template <class Pixel, class Accum, std::int32_t Max>
template <class Filter, class Plane>
bool FuzzSampler<Pixel, Accum, Max>::filterPlane(Plane& plane, const Texture& out) const {
  const std::int32_t ox = out.horizontal.writeOrigin;
  const std::int32_t oy = out.vertical.writeOrigin;
  plane.setOrigin(0, 0);
  plane.setWriteOrigin(0, 0);
  {
    Filter filter;
    setUp(filter);
    filter.x1 -= ox;
    filter.x2 -= ox;
    filter.y1 -= oy;
    filter.y2 -= oy;
    filter.keepsOthers = true;
    filter.process(&plane, &plane);
  }
  plane.setOrigin(ox, oy);
  plane.setWriteOrigin(ox, oy);
  return poll(this->interrupt) == 0;
}

template class FuzzSampler<R8, Ri, 255>;
template class FuzzSampler<R16, Ri, 32767>;
template class FuzzSampler<Rf, Rf, 1>;

}  // namespace vblur
