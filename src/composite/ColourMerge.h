// The blend operations that take a picture apart into luminance and colour differences, or into hue,
// saturation and value, and put it together from both operands. The result has the first one's alpha.
#pragma once

#include <cstdint>

#include "blur/ColourConversion.h"
#include "composite/HvHSVConverter.h"
#include "composite/HvRGBMerge.h"
#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur::blend {

// Luminance of one pixel with the colour differences of another. What leaves the range from 0 to the top
// of the storage is cut, so that negative 16-bit colours do not pass.
template <class Pixel, bool LuminanceOfFirst>
struct YuvMerge : MergeOperation<Pixel, true, true> {
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
    const YuvInt c = chosen(yuvFromRgb(std::int32_t{p.red}, std::int32_t{p.green}, std::int32_t{p.blue}),
                            yuvFromRgb(std::int32_t{q.red}, std::int32_t{q.green}, std::int32_t{q.blue}));
    return withAlpha({static_cast<float>(c.y), static_cast<float>(c.u), static_cast<float>(c.v)}, p.alpha);
  }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    return withAlpha(chosen(yuvFromRgb(p.red, p.green, p.blue), yuvFromRgb(q.red, q.green, q.blue)),
                     storeClamped<Pixel>(p.alpha));
  }

 private:
  template <class Yuv>
  static constexpr Yuv chosen(const Yuv& p, const Yuv& q) {
    return LuminanceOfFirst ? Yuv{p.y, q.u, q.v} : Yuv{q.y, p.u, p.v};
  }
  static constexpr Pixel withAlpha(const YuvFloat& c, ComponentOf<Pixel> alpha) {
    Pixel result{};
    rgbFromYuv(result, c, 0.0f, static_cast<float>(Pixel::kMax));
    result.alpha = alpha;
    return result;
  }
};

template <class Pixel>
struct Luminance : YuvMerge<Pixel, true> {};

template <class Pixel>
struct Chroma : YuvMerge<Pixel, false> {};

// Choice puts the hue, saturation and value of two pixels together. Floats are truncated to 32 bits first,
// neither limited nor narrowed.
template <class Pixel, class Choice>
struct HsvMerge : MergeOperation<Pixel, true, true> {
  using Converter = HvHSVConverter<Pixel>;
  static constexpr Pixel ofIntegers(const Pixel& p, const Pixel& q) {
    return withAlpha(Converter::fromRGB(p.red, p.green, p.blue), Converter::fromRGB(q.red, q.green, q.blue), p.alpha);
  }
  static constexpr Pixel ofFloats(const Rf& p, const Rf& q) {
    return withAlpha(Converter::fromRGB(truncToInt(p.red), truncToInt(p.green), truncToInt(p.blue)),
                     Converter::fromRGB(truncToInt(q.red), truncToInt(q.green), truncToInt(q.blue)),
                     storeClamped<Pixel>(p.alpha));
  }

 private:
  static constexpr Pixel withAlpha(const HvHSV& p, const HvHSV& q, ComponentOf<Pixel> alpha) {
    Pixel result = Converter::toRGB(Choice{}(p, q));
    result.alpha = alpha;
    return result;
  }
};

// Neither hue nor saturation can be given to a pixel when the one that lends its hue is grey.
struct HueChoice {
  constexpr HvHSV operator()(const HvHSV& p, const HvHSV& q) const {
    return {p.hue, p.saturation == 0 ? 0 : q.saturation, q.value};
  }
};

struct SaturationChoice {
  constexpr HvHSV operator()(const HvHSV& p, const HvHSV& q) const {
    return {q.hue, q.saturation == 0 ? 0 : p.saturation, q.value};
  }
};

struct ValueChoice {
  constexpr HvHSV operator()(const HvHSV& p, const HvHSV& q) const { return {q.hue, q.saturation, p.value}; }
};

struct ColourChoice {
  constexpr HvHSV operator()(const HvHSV& p, const HvHSV& q) const { return {p.hue, p.saturation, q.value}; }
};

template <class Pixel>
struct Hue : HsvMerge<Pixel, HueChoice> {};

template <class Pixel>
struct Saturation : HsvMerge<Pixel, SaturationChoice> {};

template <class Pixel>
struct Value : HsvMerge<Pixel, ValueChoice> {};

template <class Pixel>
struct Colour : HsvMerge<Pixel, ColourChoice> {};

}  // namespace vblur::blend
