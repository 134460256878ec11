#include "effect/BlurSize.h"

#include "effect/Blur.h"
#include "effect/ProjectSizes.h"
#include "image/Arithmetic.h"

namespace vblur {

void SetAspect(BlurSizeParts& parts, double aspect) {
  const double a = static_cast<float>(clampTo(aspect, -100.0, 100.0) / 100.0);
  parts.aspectX = a < 0.0 ? 1.0 + a : 1.0;
  parts.aspectY = a > 0.0 ? 1.0 - a : 1.0;
}

BlurSizeParts Blur::SizeParts(double time) const {
  BlurSizeParts parts;
  const ProjectUserSize user = ReadUserSize(effectHost);
  const std::int32_t wholeX = truncToInt(user.x);
  const std::int32_t wholeY = truncToInt(user.y);
  float pixelsX = static_cast<float>(wholeX);
  float pixelsY = static_cast<float>(wholeY);
  if (coordMan != nullptr) {
    // The ratio of the two conversions is the proxy's scale.
    const DSWorldPair rendered = coordMan->ToRenderedPixels({1.0, 1.0});
    const DSWorldPair full = coordMan->ToFullPixels({1.0, 1.0});
    pixelsX = static_cast<float>(rendered.x / full.x * static_cast<double>(wholeX));
    pixelsY = static_cast<float>(rendered.y / full.y * static_cast<double>(wholeY));
  }
  parts.pixelsPerUnitX = pixelsX / static_cast<float>(UserToWorldRatio(effectHost) * user.x);
  parts.pixelsPerUnitY = pixelsY / static_cast<float>(user.y);
  const double amount = Evaluate(PropertyId::Blur, blur_.blur, time);
  parts.amount = amount < 0.0 ? 0.0 : amount;
  SetAspect(parts, Evaluate(PropertyId::Aspect, blur_.aspect, time));
  parts.blend = clampTo(Evaluate(PropertyId::Blend, blur_.blend, time), 0.0, 100.0);
  parts.effectGain = Evaluate(PropertyId::EffectGain, blur_.effectGain, time);
  parts.sourceGain = Evaluate(PropertyId::SourceGain, blur_.sourceGain, time);
  return parts;
}

BlurSize Blur::GetBlurSize(double time) {
  const BlurSizeParts parts = SizeParts(time);
  return {static_cast<float>(static_cast<double>(parts.pixelsPerUnitX) * parts.amount * parts.aspectX *
                             static_cast<double>(frame.transitionScale)),
          static_cast<float>(static_cast<double>(parts.pixelsPerUnitY) * parts.amount *
                             static_cast<double>(frame.fieldScale) * parts.aspectY *
                             static_cast<double>(frame.transitionScale))};
}

BlurSize Blur::FilterRadius(const BlurSizeParts& parts) const {
  double amount = parts.amount;
  if (effectKind == kKindTransition) amount *= static_cast<double>(frame.transitionScale);
  const auto x = static_cast<float>(static_cast<double>(parts.pixelsPerUnitX) * amount * parts.aspectX);
  const auto y = static_cast<float>(static_cast<double>(parts.pixelsPerUnitY) * amount *
                                    static_cast<double>(frame.fieldScale) * parts.aspectY);
  return {x / 3.0f, y / 3.0f};
}

}  // namespace vblur
