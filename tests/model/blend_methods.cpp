#include "blend_methods.h"

#include <algorithm>
#include <cmath>

#include "arithmetic.h"

namespace model::blend {
namespace {

std::int32_t Sum(const Pixel& p) {
  return p[0] + p[1] + p[2];
}
float Sum(const FloatPixel& p) {
  return p[0] + p[1] + p[2];
}

FloatPixel Floats(const Pixel& p) {
  return {static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2]), static_cast<float>(p[3])};
}

Pixel Finished(Depth depth, const FloatPixel& p) {
  return {Store(depth, p[0]), Store(depth, p[1]), Store(depth, p[2]), Store(depth, p[3])};
}

std::int32_t Limited(Depth depth, std::int32_t value) {
  return Limit(value, RangeOf(depth).min, RangeOf(depth).max);
}

/// A product of two components on the scale of one.
std::int32_t Scaled(Depth depth, std::int32_t product) {
  return product / RangeOf(depth).one;
}

/// The same operation on the first `count` components, clamped; the rest are 0.
template <class Operation>
Pixel Each(Depth depth, const Pixel& p, const Pixel& q, std::size_t count, Operation operation) {
  Pixel result{};
  for (std::size_t c = 0; c < count; ++c)
    result[c] = Limited(depth, operation(p[c], q[c]));
  return result;
}

template <class Operation>
Pixel Each(Depth depth, const FloatPixel& p, const FloatPixel& q, std::size_t count, Operation operation) {
  Pixel result{};
  for (std::size_t c = 0; c < count; ++c)
    result[c] = Store(depth, operation(p[c], q[c]));
  return result;
}

float Product(Depth depth, float a, float b) {
  if (depth != Depth::Float) return a * b / One(depth);
  // Two colours below 0 would give light.
  return a < 0.0f && b < 0.0f ? -(a * b) : a * b;
}

float Screened(Depth depth, float a, float b) {
  // Beyond 1.0 the sum less the product falls again.
  if (depth == Depth::Float && (a > 1.0f || b > 1.0f)) return std::max(a, b);
  return a + b - b * a / One(depth);
}

/// What Add Over adds of a picture to itself: the mean of the other's colours.
float Strength(Depth depth, const FloatPixel& other) {
  const float k = Sum(other) / (3.0f * One(depth));
  // Below -1.0 a picture would turn into its negative.
  return depth == Depth::Float && k < -1.0f ? -1.0f : k;
}

}  // namespace

Pixel Darken(Depth depth, const Pixel& p, const Pixel& q) {
  (void)depth;
  Pixel result = Sum(q) > Sum(p) ? p : q;
  result[3] = 0;
  return result;
}

Pixel Darken(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  Pixel result = Finished(depth, Sum(q) > Sum(p) ? p : q);
  result[3] = 0;
  return result;
}

Pixel Lighten(Depth depth, const Pixel& p, const Pixel& q) {
  (void)depth;
  return Sum(p) > Sum(q) ? p : q;
}

Pixel Lighten(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  return Finished(depth, Sum(p) > Sum(q) ? p : q);
}

Pixel Screen(Depth depth, const Pixel& p, const Pixel& q) {
  Pixel result = Each(depth, p, q, 3, [&](std::int32_t a, std::int32_t b) { return a + b - Scaled(depth, a * b); });
  result[3] = p[3] > q[3] ? p[3] : q[3];
  return result;
}

Pixel Screen(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  Pixel result = Each(depth, p, q, 3, [&](float a, float b) { return Screened(depth, a, b); });
  result[3] = Store(depth, p[3] > q[3] ? p[3] : q[3]);
  return result;
}

Pixel Multiply(Depth depth, const Pixel& p, const Pixel& q) {
  Pixel result = Each(depth, p, q, 3, [&](std::int32_t a, std::int32_t b) { return Scaled(depth, a * b); });
  result[3] = p[3] < q[3] ? p[3] : q[3];
  return result;
}

Pixel Multiply(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  Pixel result = Each(depth, p, q, 3, [&](float a, float b) { return Product(depth, a, b); });
  result[3] = Store(depth, p[3] < q[3] ? p[3] : q[3]);
  return result;
}

Pixel Add(Depth depth, const Pixel& p, const Pixel& q) {
  return Each(depth, p, q, 4, [](std::int32_t a, std::int32_t b) { return a + b; });
}

Pixel Add(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  return Each(depth, p, q, 4, [](float a, float b) { return a + b; });
}

Pixel AddOver(Depth depth, const Pixel& p, const Pixel& q) {
  // Both forms compute in floats.
  return AddOver(depth, Floats(p), Floats(q));
}

Pixel AddOver(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  const float k = Strength(depth, q);
  Pixel result = Each(depth, p, q, 3, [&](float a, float) { return a * k + a; });
  result[3] = Store(depth, p[3] + q[3]);
  return result;
}

Pixel AddUnder(Depth depth, const Pixel& p, const Pixel& q) {
  return AddUnder(depth, Floats(p), Floats(q));
}

Pixel AddUnder(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  const float k = Strength(depth, p);
  Pixel result = Each(depth, p, q, 3, [&](float, float b) { return b * k + b; });
  result[3] = Store(depth, p[3] + q[3]);
  return result;
}

Pixel Subtract(Depth depth, const Pixel& p, const Pixel& q) {
  return Each(depth, p, q, 4, [](std::int32_t a, std::int32_t b) { return a - b; });
}

Pixel Subtract(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  return Each(depth, p, q, 4, [](float a, float b) { return a - b; });
}

Pixel Difference(Depth depth, const Pixel& p, const Pixel& q) {
  return Each(depth, p, q, 4, [](std::int32_t a, std::int32_t b) { return a > b ? a - b : b - a; });
}

Pixel Difference(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  return Each(depth, p, q, 4, [](float a, float b) { return std::fabs(a - b); });
}

Pixel Overlay(Depth depth, const Pixel& p, const Pixel& q) {
  return HardLight(depth, q, p);
}

Pixel Overlay(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  return HardLight(depth, q, p);
}

Pixel HardLight(Depth depth, const Pixel& p, const Pixel& q) {
  const std::int32_t one = RangeOf(depth).one;
  const bool screens = Sum(p) > 3 * one;
  return Each(depth, p, q, 4, [&](std::int32_t a, std::int32_t b) {
    if (screens) return (b + a - Scaled(depth, b * a)) * 2 - one;
    // 2 x 32768 x 32768 is 2^31 and wraps.
    return Scaled(depth, model::Multiply(2, a * b));
  });
}

Pixel HardLight(Depth depth, const FloatPixel& p, const FloatPixel& q) {
  const float one = One(depth);
  const bool screens = Sum(p) > 3.0f * one;
  return Each(depth, p, q, 4, [&](float a, float b) {
    if (screens) return Screened(depth, a, b) * 2.0f - one;
    return Product(depth, 2.0f * a, b);
  });
}

}  // namespace model::blend
