#include "hsv.h"

#include <algorithm>

#include "arithmetic.h"

namespace model {
namespace {

/// The hue, from the sector of the greatest component.
std::int32_t HueOf(std::int32_t one, std::int32_t r, std::int32_t g, std::int32_t b, std::int32_t greatest,
                   std::int32_t least) {
  const std::int32_t third = one * 2;
  const std::int32_t d = Multiply(Subtract(greatest, least), 2);
  const auto offset = [&](std::int32_t p, std::int32_t q) { return Divide(Multiply(Subtract(p, q), third), d); };
  if (r == greatest) {
    const std::int32_t hue = offset(g, b);
    return hue < 0 ? Add(hue, one * 6) : hue;
  }
  if (g == greatest) return Add(offset(b, r), third);
  return Add(offset(r, g), 2 * third);
}

/// +0 for a zero of either sign.
double Greatest(const Colours& c) {
  const double most = static_cast<double>(std::max({c[0], c[1], c[2]}));
  return most == 0.0 ? 0.0 : most;
}

double SpanOf(const Colours& c) {
  return Greatest(c) - static_cast<double>(std::min({c[0], c[1], c[2]}));
}

/// The value, or the value less the least colour where that is 0 or below.
double Height(const Colours& c) {
  const double least = static_cast<double>(std::min({c[0], c[1], c[2]}));
  return least <= 0.0 ? Greatest(c) - least : Greatest(c);
}

}  // namespace

Hsv ToHsv(Depth depth, std::int32_t r, std::int32_t g, std::int32_t b) {
  const std::int32_t one = RangeOf(depth).one;
  const std::int32_t greatest = std::max({r, g, b});
  const std::int32_t least = std::min({r, g, b});
  if (greatest == 0) return {0, 0, 0};
  const std::int32_t saturation = Divide(Multiply(Subtract(greatest, least), one), greatest);
  if (saturation == 0) return {0, 0, greatest};
  return {HueOf(one, r, g, b, greatest, least), saturation, greatest};
}

Pixel FromHsv(Depth depth, const Hsv& hsv) {
  const Range range = RangeOf(depth);
  const std::int32_t one = range.one;
  const std::int32_t v = hsv.value;
  const auto limited = [&](std::int32_t r, std::int32_t g, std::int32_t b) {
    return Pixel{Limit(r, range.min, range.max), Limit(g, range.min, range.max), Limit(b, range.min, range.max), 0};
  };
  if (hsv.saturation == 0) return limited(v, v, v);

  std::int32_t hue = hsv.hue % (one * 6);
  if (hue < 0) hue += one * 6;
  const std::int32_t sector = hue / one;
  const std::int32_t f = hue - sector * one;
  // Each shade is v less a share of the saturation.
  const auto share = [&](std::int32_t part) { return Multiply(part, hsv.saturation) / one; };
  const auto shade = [&](std::int32_t taken) { return Multiply(Subtract(one, taken), v) / one; };
  const std::int32_t p = shade(hsv.saturation);
  const std::int32_t q = shade(share(f));
  const std::int32_t t = shade(share(one - f));
  switch (sector) {
    case 0: return limited(v, t, p);
    case 1: return limited(q, v, p);
    case 2: return limited(p, v, t);
    case 3: return limited(p, q, v);
    case 4: return limited(t, p, v);
    default: return limited(v, p, q);
  }
}

Colours Recolour(const Colours& hue, const Colours& saturation, const Colours& value) {
  const double top = Greatest(value);
  const float grey = static_cast<float>(top);
  if (SpanOf(hue) == 0.0 || SpanOf(saturation) == 0.0) return {grey, grey, grey};
  const double stretch = SpanOf(saturation) * Height(value) / (Height(saturation) * SpanOf(hue));
  if (stretch == 1.0 && top == Greatest(hue)) return hue;
  const double span = std::min(SpanOf(saturation) * Height(value) / Height(saturation), Height(value));
  Colours result{};
  for (std::size_t c = 0; c < 3; ++c) {
    // The least colour lies the whole span below the top, whatever the rounding of the stretch.
    const double below = Greatest(hue) - static_cast<double>(hue[c]);
    const double moved = below == SpanOf(hue) ? span : below * stretch;
    result[c] = static_cast<float>(std::max(top - moved, top - span));
  }
  return result;
}

}  // namespace model
