#include "colour.h"

#include "arithmetic.h"

namespace model {
namespace {

std::int32_t Weighted(std::int32_t r, std::int32_t kr, std::int32_t g, std::int32_t kg, std::int32_t b,
                      std::int32_t kb) {
  return Add(Add(Multiply(r, kr), Multiply(g, kg)), Multiply(b, kb)) >> 12;
}

}  // namespace

Yuv ToYuv(std::int32_t r, std::int32_t g, std::int32_t b) {
  return {Weighted(r, 1224, g, 2403, b, 468), Weighted(r, -603, g, -1184, b, 1787),
          Weighted(r, 2518, g, -2107, b, -411)};
}

YuvFloat ToYuvFloat(float r, float g, float b) {
  return {r * 0.2989f + g * 0.5866f + b * 0.1144f, b * 0.4364f - (g * 0.2891f + r * 0.1473f),
          r * 0.6149f - g * 0.5145f - b * 0.1004f};
}

std::array<float, 3> RgbOfYuv(const YuvFloat& yuv) {
  const float r = yuv.u * 0.00014135384f + yuv.y * 1.0001f + yuv.v * 1.1401706f;
  const float g = yuv.y * 1.0001f - yuv.u * 0.3958304f - yuv.v * 0.5809656f;
  const float b = yuv.u * 2.0292995f + yuv.y * 1.0001001f - yuv.v * 0.0000229211f;
  return {r, g, b};
}

Pixel FromYuv(const YuvFloat& yuv, std::int32_t top) {
  const auto [r, g, b] = RgbOfYuv(yuv);
  const float high = static_cast<float>(top);
  return {Truncate(Limit(r, 0.0f, high)), Truncate(Limit(g, 0.0f, high)), Truncate(Limit(b, 0.0f, high)), 0};
}

}  // namespace model
