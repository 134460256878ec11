#include "effect/BlurSize.h"

#include <algorithm>
#include <cmath>

#include "blur/BoxConstants.h"
#include "effect/Blur.h"
#include "image/Arithmetic.h"

namespace vblur {

void SetAspect(BlurSizeParts& parts, double aspect) {
  const double a = static_cast<float>(std::clamp(aspect, -100.0, 100.0) / 100.0);
  parts.aspectX = a < 0.0 ? 1.0 - std::clamp(-a, 0.0, 1.0) : 1.0;
  parts.aspectY = a > 0.0 ? 1.0 - std::min(a, 1.0) : 1.0;
}

double Blur::UserToWorldRatio() const {
  double user = 0.0;
  double world = 0.0;
  if (DSContentGetProperty(kProjectUserSizeY, user) != kOk) return 1.0;
  if (DSContentGetProperty(kProjectWorldSizeY, world) != kOk) return 1.0;
  return user / world;
}

double Blur::PlacementRatio() const {
  double ignored = 0.0;
  double user = 0.0;
  double world = 0.0;
  if (DSContentGetProperty(kProjectUserSizeX, ignored) != kOk) return 0.0;
  if (DSContentGetProperty(kProjectWorldSizeX, ignored) != kOk) return 0.0;
  if (DSContentGetProperty(kProjectUserSizeY, user) != kOk) return 0.0;
  if (DSContentGetProperty(kProjectWorldSizeY, world) != kOk) return 0.0;
  return user / world;
}

BlurSizeParts Blur::SizeParts(double time) const {
  BlurSizeParts parts;
  double userX = 1.0;
  double userY = 1.0;
  if (DSContentGetProperty(kProjectUserSizeX, userX) != kOk || DSContentGetProperty(kProjectUserSizeY, userY) != kOk) {
    userX = 1.0;
    userY = 1.0;
  }
  const std::int32_t wholeX = truncToInt(userX);
  const std::int32_t wholeY = truncToInt(userY);
  float pixelsX = static_cast<float>(wholeX);
  float pixelsY = static_cast<float>(wholeY);
  if (coordMan != nullptr) {
    // A proxy has fewer pixels than the project; the two conversions carry by how much.
    const DSWorldPair rendered = coordMan->ToRenderedPixels({1.0, 1.0});
    const DSWorldPair full = coordMan->ToFullPixels({1.0, 1.0});
    pixelsX = static_cast<float>(rendered.x / full.x * static_cast<double>(wholeX));
    pixelsY = static_cast<float>(rendered.y / full.y * static_cast<double>(wholeY));
  }
  parts.pixelsPerUnitX = pixelsX / static_cast<float>(UserToWorldRatio() * userX);
  parts.pixelsPerUnitY = pixelsY / static_cast<float>(userY);
  const double amount = Evaluate(PropertyId::Blur, blur_.blur, time);
  parts.amount = amount < 0.0 ? 0.0 : amount;
  SetAspect(parts, Evaluate(PropertyId::Aspect, blur_.aspect, time));
  parts.blend = std::clamp(Evaluate(PropertyId::Blend, blur_.blend, time), 0.0, 100.0);
  parts.effectGain = Evaluate(PropertyId::EffectGain, blur_.effectGain, time);
  parts.sourceGain = Evaluate(PropertyId::SourceGain, blur_.sourceGain, time);
  return parts;
}

BlurSize Blur::GetBlurSize(double time) {
  const BlurSizeParts parts = SizeParts(time);
  return {static_cast<float>(static_cast<double>(parts.pixelsPerUnitX) * parts.amount * parts.aspectX *
                             static_cast<double>(transitionScale)),
          static_cast<float>(static_cast<double>(parts.pixelsPerUnitY) * parts.amount *
                             static_cast<double>(fieldScale) * parts.aspectY * static_cast<double>(transitionScale))};
}

BlurSize Blur::FilterRadius(const BlurSizeParts& parts) const {
  double amount = parts.amount;
  if (effectKind == kKindTransition) amount *= static_cast<double>(transitionScale);
  const auto x = static_cast<float>(static_cast<double>(parts.pixelsPerUnitX) * amount * parts.aspectX);
  const auto y = static_cast<float>(static_cast<double>(parts.pixelsPerUnitY) * amount *
                                    static_cast<double>(fieldScale) * parts.aspectY);
  return {x / 3.0f, y / 3.0f};
}

// The variance of a box is that of its weighted taps; three boxes add theirs. The gain is that of one
// box's fixed-point weights to the power of the six boxes of both axes.
BlurSizeFacts Blur::DescribeBlurSize(double blur) const {
  const float radius = static_cast<float>(std::max(blur, 0.0)) / 3.0f;
  const BoxConstants box = boxConstants(radius);
  const double r = box.r;
  const double f = static_cast<double>(radius) - r;
  const double squares = r * (r + 1.0) * (2.0 * r + 1.0) / 3.0 + 2.0 * f * (r + 1.0) * (r + 1.0);
  const double weights = (2.0 * r + 1.0 + 2.0 * box.frac / 16384.0) * box.scale / 16384.0;
  return {.boxRadius = static_cast<double>(radius),
          .sigma = std::sqrt(3.0 * squares / (2.0 * r + 1.0 + 2.0 * f)),
          .flatGain = std::pow(weights, 6.0)};
}

}  // namespace vblur
