#include "blur/FuzzSampler.h"

#include "blur/ChannelExtractor.h"
#include "blur/GaussFilter.h"
#include "blur/GreyToRGBSampler.h"
#include "blur/RGBToYUVSampler.h"
#include "blur/SubtractCombiner.h"
#include "blur/YUVToRGBSampler.h"
#include "image/ChannelCopySampler.h"

namespace vblur {

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
  combiner.interrupt = this->interrupt;
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
  filter.interrupt = this->interrupt;
  filter.copyWindow(*this);
  filter.sizeX = sizeX;
  filter.sizeY = sizeY;
  filter.aspect = this->aspect;
  filter.inverseAspect = this->inverseAspect;
}

template <class Pixel, class Accum, std::int32_t Max>
template <int R, int G, int B, int A>
void FuzzSampler<Pixel, Accum, Max>::copyChannelsOf(Texture* in, Texture* out, bool inWindow) {
  ChannelCopySampler<Pixel, Accum, R, G, B, A> copy;
  copy.interrupt = this->interrupt;
  if (inWindow) copy.copyWindow(*this);
  copy.process(in, out);
}

template <class Pixel, class Accum, std::int32_t Max>
template <int R, int G, int B, int A>
void FuzzSampler<Pixel, Accum, Max>::filterDirectly(Texture* in, Texture* out) {
  BlurRGBAGauss<Pixel, Accum, Max, R, G, B, A> filter;
  setUp(filter);
  filter.process(in, out);
  if constexpr (!ChannelMask<R, G, B, A>::kAll) {
    // Alpha beside filtered colours is copied over the whole picture, whatever the window.
    copyChannelsOf<1 - R, 1 - G, 1 - B, 1 - A>(in, out, mode != kFuzzRGB);
  }
}

// An owned picture of the target's size that lies where the target is written and answers beyond its
// edges as the source does.
template <class Pixel, class Accum, std::int32_t Max>
template <class Plane>
bool FuzzSampler<Pixel, Accum, Max>::makePlane(Plane& plane, const Texture& in, const Texture& out) {
  plane.horizontal.setSize(this->mapWidth);
  plane.vertical.setSize(this->mapHeight);
  plane.allocate();
  if (plane.data == nullptr) {
    stopForRefusedMemory(this->interrupt);
    return false;
  }
  plane.setWriteOrigin(out.horizontal.writeOrigin, out.vertical.writeOrigin);
  plane.setOrigin(out.horizontal.writeOrigin, out.vertical.writeOrigin);
  plane.setEdgeMethods(in.horizontal.edgeMethod, in.vertical.edgeMethod);
  return true;
}

// The planes are filled this far around the window, so that the filter sees real pixels there.
template <class Pixel, class Accum, std::int32_t Max>
template <class Reader>
void FuzzSampler<Pixel, Accum, Max>::widenWindow(Reader& reader) const {
  const std::int32_t mx = wrapAdd(wrapMul(truncToInt(sizeX), 3), 6);
  const std::int32_t my = wrapAdd(wrapMul(truncToInt(sizeY), 3), 6);
  reader.copyWindow(*this);
  reader.x1 = wrapSub(reader.x1, mx);
  reader.y1 = wrapSub(reader.y1, my);
  reader.x2 = wrapAdd(reader.x2, mx);
  reader.y2 = wrapAdd(reader.y2, my);
}

template <class Pixel, class Accum, std::int32_t Max>
void FuzzSampler<Pixel, Accum, Max>::filterGrey(Texture* in, Texture* out) {
  using Plane = HvTexture<int, int>;
  Plane plane;
  if (!makePlane(plane, *in, *out)) return;
  ChannelExtractor<Texture, Plane, Pixel, int, 0> extractor;
  extractor.interrupt = this->interrupt;
  widenWindow(extractor);
  extractor.process(in, &plane);

  BlurGeneralGauss<int, int, Max, 1, 0, 0, 0> filter;
  setUp(filter);
  filter.process(&plane, &plane);

  GreyToRGBSampler<Plane, Texture, int, Pixel, Max> spreader;
  spreader.interrupt = this->interrupt;
  spreader.copyWindow(*this);
  spreader.process(&plane, out);

  copyChannelsOf<0, 0, 0, 1>(in, out, true);
}

template <class Pixel, class Accum, std::int32_t Max>
template <int Y, int U, int V>
void FuzzSampler<Pixel, Accum, Max>::filterYuv(Texture* in, Texture* out) {
  using Plane = HvTexture<Ri, Ri>;
  Plane plane;
  if (!makePlane(plane, *in, *out)) return;
  RGBToYUVSampler<Texture, Plane, Pixel, Accum, Max> forward;
  forward.interrupt = this->interrupt;
  widenWindow(forward);
  forward.process(in, &plane);

  const std::int32_t ox = out->horizontal.writeOrigin;
  const std::int32_t oy = out->vertical.writeOrigin;
  plane.setOrigin(0, 0);
  plane.setWriteOrigin(0, 0);
  {
    BlurRGBAGauss<Ri, Ri, Max, Y, U, V, 0> filter;
    setUp(filter);
    filter.x1 -= ox;
    filter.x2 -= ox;
    filter.y1 -= oy;
    filter.y2 -= oy;
    filter.process(&plane, &plane);
  }
  plane.setOrigin(ox, oy);
  plane.setWriteOrigin(ox, oy);
  // A picture half made is never shown.
  if (poll(this->interrupt) != 0) return;

  YUVToRGBSampler<Plane, Texture, Ri, Pixel, Max> backward;
  backward.interrupt = this->interrupt;
  backward.copyWindow(*this);
  backward.process(&plane, out);

  copyChannelsOf<0, 0, 0, 1>(in, out, false);
}

template class FuzzSampler<R8, Ri, 255>;
template class FuzzSampler<R16, Ri, 32767>;

}  // namespace vblur
