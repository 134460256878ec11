// The blend methods on luminance and chroma, or on hue, saturation and value.
#include "arithmetic.h"
#include "blend_methods.h"
#include "colour.h"
#include "hsv.h"

namespace model::blend {
namespace {

Pixel WithAlpha(Pixel pixel, std::int32_t alpha) {
  pixel[3] = alpha;
  return pixel;
}

YuvFloat YuvOf(const Pixel& p) {
  const Yuv yuv = ToYuv(p[0], p[1], p[2]);
  return {static_cast<float>(yuv.y), static_cast<float>(yuv.u), static_cast<float>(yuv.v)};
}

YuvFloat YuvOf(const FloatPixel& p) {
  return ToYuvFloat(p[0], p[1], p[2]);
}

Colours ColoursOf(const FloatPixel& p) {
  return {p[0], p[1], p[2]};
}

/// The first pixel with a change of its YUV; its own alpha.
Pixel Changed(const FloatPixel& p, const YuvFloat& change) {
  const Colours colours = RgbOfYuv(change);
  return {BitsOf(p[0] + colours[0]), BitsOf(p[1] + colours[1]), BitsOf(p[2] + colours[2]), BitsOf(p[3])};
}

/// The colours that the three pixels give, with the alpha of the first operand.
Pixel Recoloured(const FloatPixel& hue, const FloatPixel& saturation, const FloatPixel& value, float alpha) {
  const Colours colours = Recolour(ColoursOf(hue), ColoursOf(saturation), ColoursOf(value));
  return {BitsOf(colours[0]), BitsOf(colours[1]), BitsOf(colours[2]), BitsOf(alpha)};
}

Hsv HsvOf(Depth depth, const Pixel& p) {
  return ToHsv(depth, p[0], p[1], p[2]);
}

/// Truncated, neither clamped nor narrowed.
Hsv HsvOf(Depth depth, const FloatPixel& p) {
  return ToHsv(depth, Truncate(p[0]), Truncate(p[1]), Truncate(p[2]));
}

std::int32_t AlphaOf(Depth, const Pixel& p) {
  return p[3];
}
std::int32_t AlphaOf(Depth depth, const FloatPixel& p) {
  return Store(depth, p[3]);
}

template <class AnyPixel>
Pixel LuminanceOf(Depth depth, const AnyPixel& p, const AnyPixel& q) {
  const YuvFloat first = YuvOf(p);
  const YuvFloat second = YuvOf(q);
  return WithAlpha(FromYuv({first.y, second.u, second.v}, RangeOf(depth).top), AlphaOf(depth, p));
}

template <class AnyPixel>
Pixel ChromaOf(Depth depth, const AnyPixel& p, const AnyPixel& q) {
  const YuvFloat first = YuvOf(p);
  const YuvFloat second = YuvOf(q);
  return WithAlpha(FromYuv({second.y, first.u, first.v}, RangeOf(depth).top), AlphaOf(depth, p));
}

template <class AnyPixel>
Pixel HueOf(Depth depth, const AnyPixel& p, const AnyPixel& q) {
  const Hsv first = HsvOf(depth, p);
  const Hsv second = HsvOf(depth, q);
  // The hue of a grey is undefined.
  const std::int32_t saturation = first.saturation == 0 ? 0 : second.saturation;
  return WithAlpha(FromHsv(depth, {first.hue, saturation, second.value}), AlphaOf(depth, p));
}

template <class AnyPixel>
Pixel SaturationOf(Depth depth, const AnyPixel& p, const AnyPixel& q) {
  const Hsv first = HsvOf(depth, p);
  const Hsv second = HsvOf(depth, q);
  const std::int32_t saturation = second.saturation == 0 ? 0 : first.saturation;
  return WithAlpha(FromHsv(depth, {second.hue, saturation, second.value}), AlphaOf(depth, p));
}

template <class AnyPixel>
Pixel ValueOf(Depth depth, const AnyPixel& p, const AnyPixel& q) {
  const Hsv first = HsvOf(depth, p);
  const Hsv second = HsvOf(depth, q);
  return WithAlpha(FromHsv(depth, {second.hue, second.saturation, first.value}), AlphaOf(depth, p));
}

template <class AnyPixel>
Pixel ColourOf(Depth depth, const AnyPixel& p, const AnyPixel& q) {
  const Hsv first = HsvOf(depth, p);
  const Hsv second = HsvOf(depth, q);
  return WithAlpha(FromHsv(depth, {first.hue, first.saturation, second.value}), AlphaOf(depth, p));
}

}  // namespace

Pixel Luminance(Depth depth, const Pixel& p, const Pixel& q) {
  return LuminanceOf(depth, p, q);
}
Pixel Luminance(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  if (depth == Depth::Float) {
    const YuvFloat own = YuvOf(p);
    const YuvFloat other = YuvOf(q);
    return Changed(p, {0.0f, other.u - own.u, other.v - own.v});
  }
  return LuminanceOf(depth, p, q);
}

Pixel Chroma(Depth depth, const Pixel& p, const Pixel& q) {
  return ChromaOf(depth, p, q);
}
Pixel Chroma(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  if (depth == Depth::Float) return Changed(p, {YuvOf(q).y - YuvOf(p).y, 0.0f, 0.0f});
  return ChromaOf(depth, p, q);
}

Pixel Hue(Depth depth, const Pixel& p, const Pixel& q) {
  return HueOf(depth, p, q);
}
Pixel Hue(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  if (depth == Depth::Float) return Recoloured(p, q, q, p[3]);
  return HueOf(depth, p, q);
}

Pixel Saturation(Depth depth, const Pixel& p, const Pixel& q) {
  return SaturationOf(depth, p, q);
}
Pixel Saturation(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  if (depth == Depth::Float) return Recoloured(q, p, q, p[3]);
  return SaturationOf(depth, p, q);
}

Pixel Value(Depth depth, const Pixel& p, const Pixel& q) {
  return ValueOf(depth, p, q);
}
Pixel Value(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  if (depth == Depth::Float) return Recoloured(q, q, p, p[3]);
  return ValueOf(depth, p, q);
}

Pixel Colour(Depth depth, const Pixel& p, const Pixel& q) {
  return ColourOf(depth, p, q);
}
Pixel Colour(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  if (depth == Depth::Float) return Recoloured(p, p, q, p[3]);
  return ColourOf(depth, p, q);
}

}  // namespace model::blend
