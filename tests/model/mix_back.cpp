#include "mix_back.h"

#include <cmath>
#include <limits>

#include "arithmetic.h"

namespace model {
namespace {

using blend::FloatPixel;

/// 1/255 in 32 bits: a blend or gain within it of one half or 1 is neutral.
constexpr double kNeutral = 0.003921568859368563;

struct Method {
  Pixel (*whole)(Depth, const Pixel&, const Pixel&);
  Pixel (*floating)(Depth, const FloatPixel&, const FloatPixel&);
  bool mixesBefore;  ///< mixes the operands, then combines them; if false, combines, then mixes
  bool firstAlpha;   ///< the result has the first operand's alpha
};

/// In the order of the list, from Luminance on.
constexpr Method kMethods[] = {
    {blend::Luminance, blend::Luminance, true, true},
    {blend::Chroma, blend::Chroma, true, true},
    {blend::Hue, blend::Hue, true, true},
    {blend::Saturation, blend::Saturation, true, true},
    {blend::Value, blend::Value, true, true},
    {blend::Colour, blend::Colour, true, true},
    {blend::Darken, blend::Darken, true, false},
    {blend::Lighten, blend::Lighten, true, false},
    {blend::Screen, blend::Screen, false, false},
    {blend::Multiply, blend::Multiply, false, false},
    {blend::Add, blend::Add, false, false},
    {blend::AddOver, blend::AddOver, false, false},
    {blend::AddUnder, blend::AddUnder, false, false},
    {blend::Subtract, blend::Subtract, false, false},
    {blend::Difference, blend::Difference, false, false},
    {blend::Overlay, blend::Overlay, false, false},
    {blend::HardLight, blend::HardLight, false, false},
};

/// Of floats, within limits that no later product overflows.
FloatPixel Times(Depth depth, const Pixel& pixel, float factor) {
  FloatPixel result{};
  for (std::size_t c = 0; c < 4; ++c) {
    result[c] = Load(depth, pixel[c]) * factor;
    if (depth == Depth::Float) result[c] = Limit(result[c], -0x1p60f, 0x1p60f);
  }
  return result;
}

FloatPixel MixPixels(const FloatPixel& a, const FloatPixel& b, float amount) {
  FloatPixel result{};
  for (std::size_t c = 0; c < 4; ++c)
    result[c] = MixFloats(a[c], b[c], amount);
  return result;
}

FloatPixel Plus(const FloatPixel& a, const FloatPixel& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2], a[3] + b[3]};
}

FloatPixel WeightedSum(Depth depth, const Pixel& a, float weightA, const Pixel& b, float weightB) {
  return Plus(Times(depth, a, weightA), Times(depth, b, weightB));
}

/// Factors of one stage; 1.0 is 100 percent.
struct Factors {
  float gainA, gainB;
  float weightA, weightB;  ///< for a blend other than one half
};

Factors FactorsOf(const MixSettings& settings, MixForm form) {
  const float m = Limit(settings.blend / 100.0f, 0.0f, 1.0f);
  Factors factors{settings.effectGain / 100.0f, settings.sourceGain / 100.0f, 1.0f, 1.0f};
  if (form == MixForm::TowardEffect) {
    factors.weightB = m * 2.0f;
    factors.weightA = 1.0f - factors.weightB;
  } else if (form == MixForm::TowardSource) {
    factors.weightA = (1.0f - m) * 2.0f;
    factors.weightB = 1.0f - factors.weightA;
  }
  return factors;
}

/// The operands are mixed, then combined.
Pixel MixedBefore(const Method& method, Depth depth, MixForm form, const Factors& k, const Pixel& a, const Pixel& b) {
  const FloatPixel gainedA = Times(depth, a, k.gainA);
  const FloatPixel gainedB = Times(depth, b, k.gainB);
  if (form == MixForm::Gained) return method.floating(depth, gainedA, gainedB);
  const bool floats = depth == Depth::Float;
  const FloatPixel mixed = floats ? MixPixels(gainedA, gainedB, k.weightA)
                                  : WeightedSum(depth, a, k.gainA * k.weightA, b, k.gainB * k.weightB);
  if (form == MixForm::TowardSource) return method.floating(depth, mixed, gainedB);
  FloatPixel first = gainedA;
  // On this side the effect's alpha takes the source's gain.
  if (method.firstAlpha) first[3] = Times(depth, a, k.gainB)[3];
  return method.floating(depth, first, mixed);
}

/// The operands are combined into a finished pixel, then mixed.
Pixel MixedAfter(const Method& method, Depth depth, MixForm form, const Factors& k, const Pixel& a, const Pixel& b) {
  const FloatPixel gainedA = Times(depth, a, k.gainA);
  const FloatPixel gainedB = Times(depth, b, k.gainB);
  const Pixel combined = method.floating(depth, gainedA, gainedB);
  if (form == MixForm::Gained) return combined;
  Pixel result{};
  for (std::size_t c = 0; c < 4; ++c) {
    const float whole = Load(depth, combined[c]);
    if (depth == Depth::Float) {
      result[c] = BitsOf(form == MixForm::TowardSource ? MixFloats(whole, gainedB[c], k.weightA)
                                                       : MixFloats(gainedA[c], whole, k.weightA));
      continue;
    }
    const float sum = form == MixForm::TowardSource ? whole * k.weightA + gainedB[c] * k.weightB
                                                    : gainedA[c] * k.weightA + whole * k.weightB;
    result[c] = Store(depth, sum);
  }
  return result;
}

/// In doubles, rounded once, within the range of floats.
Pixel MixPlainFloats(const MixSettings& settings, const Pixel& effect, const Pixel& source) {
  const float m = settings.blend / 100.0f;
  const double weightA = static_cast<double>((1.0f - m) * (settings.effectGain / 100.0f));
  const double weightB = static_cast<double>(m * (settings.sourceGain / 100.0f));
  constexpr double kMost = std::numeric_limits<float>::max();
  Pixel result{};
  for (std::size_t c = 0; c < 4; ++c) {
    const double sum =
        static_cast<double>(FloatOf(effect[c])) * weightA + static_cast<double>(FloatOf(source[c])) * weightB;
    result[c] = BitsOf(static_cast<float>(Limit(sum, -kMost, kMost)));
  }
  return result;
}

}  // namespace

Pixel MixPlain(const MixSettings& settings, const Pixel& effect, const Pixel& source) {
  if (settings.depth == Depth::Float) return MixPlainFloats(settings, effect, source);
  const float m = settings.blend / 100.0f;
  const float weightA = (1.0f - m) * settings.effectGain / 100.0f;
  const float weightB = m * settings.sourceGain / 100.0f;
  const bool limits = weightA < 0.0f || weightB < 0.0f || weightA + weightB > 1.0f;
  const float one = static_cast<float>(RangeOf(settings.depth).one);
  const FloatPixel sum = WeightedSum(settings.depth, effect, weightA, source, weightB);
  Pixel result{};
  for (std::size_t c = 0; c < 4; ++c) {
    const float value = limits ? Limit(sum[c], 0.0f, one) : sum[c];
    result[c] = Narrow(settings.depth, Truncate(value));
  }
  return result;
}

MixForm FormOf(const MixSettings& settings) {
  const float m = Limit(settings.blend / 100.0f, 0.0f, 1.0f);
  const bool floats = settings.depth == Depth::Float;
  const bool even = floats ? m == 0.5f : std::fabs(static_cast<double>(m) - 0.5) < kNeutral;
  if (!even) return m < 0.5f ? MixForm::TowardEffect : MixForm::TowardSource;
  if (floats) return MixForm::Gained;
  const auto gains = [](float percent) { return std::fabs(percent / 100.0f - 1.0f) > 0.003921569f; };
  return gains(settings.effectGain) || gains(settings.sourceGain) ? MixForm::Gained : MixForm::Whole;
}

Pixel MixByMethod(const MixSettings& settings, const Pixel& effect, const Pixel& source) {
  const Method& method = kMethods[settings.method - kMixFirst];
  const MixForm form = FormOf(settings);
  if (form == MixForm::Whole) return method.whole(settings.depth, effect, source);
  const Factors factors = FactorsOf(settings, form);
  return method.mixesBefore ? MixedBefore(method, settings.depth, form, factors, effect, source)
                            : MixedAfter(method, settings.depth, form, factors, effect, source);
}

void MixBack(const MixSettings& settings, const Picture& source, Picture& result, const Window& window) {
  if (settings.method < kMixPlain || settings.method > kMixLast) return;
  const auto mix = settings.method == kMixPlain ? MixPlain : MixByMethod;
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x) {
      Pixel& effect = Target(result, x, y);
      effect = mix(settings, effect, At(source, x, y));
    }
  }
}

void MixPictures(Depth depth, float amount, const Picture& first, const Picture* second, Picture& target,
                 const Window& window) {
  const std::int32_t share = AmountOf(depth, amount);
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x) {
      const Pixel a = At(first, x, y);
      Pixel& to = Target(target, x, y);
      const Pixel b = second != nullptr ? At(*second, x, y) : to;
      for (std::size_t c = 0; c < 4; ++c)
        to[c] = MixWhole(depth, a[c], b[c], share);
    }
  }
}

}  // namespace model
