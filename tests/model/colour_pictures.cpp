#include "colour_pictures.h"

#include "arithmetic.h"
#include "colour.h"

namespace model {
namespace {

template <class Conversion>
void ForEach(const Picture& input, Picture& output, const Window& window, Conversion convert) {
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x)
      Target(output, x, y) = convert(At(input, x, y));
  }
}

std::int32_t Halved(std::int32_t value, std::int32_t top) {
  return Truncate(static_cast<double>(Add(value, top)) * 0.5);
}

float Doubled(std::int32_t stored, std::int32_t top) {
  return static_cast<float>(Subtract(Multiply(stored, 2), top));
}

}  // namespace

Pixel YuvPixel(const Pixel& rgb, Depth depth) {
  if (depth == Depth::Float) {
    const YuvFloat yuv = ToYuvFloat(FloatOf(rgb[0]), FloatOf(rgb[1]), FloatOf(rgb[2]));
    return {BitsOf(yuv.y), BitsOf(yuv.u), BitsOf(yuv.v), rgb[3]};
  }
  const std::int32_t top = RangeOf(depth).top;
  const Yuv yuv = ToYuv(rgb[0], rgb[1], rgb[2]);
  return {Halved(yuv.y, top), Halved(yuv.u, top), Halved(yuv.v, top), rgb[3]};
}

Pixel RgbPixel(const Pixel& yuv, Depth depth) {
  const std::int32_t top = RangeOf(depth).top;
  Pixel rgb = FromYuv({Doubled(yuv[0], top), Doubled(yuv[1], top), Doubled(yuv[2], top)}, top);
  for (std::size_t c = 0; c < 3; ++c)
    rgb[c] = Narrow(depth, rgb[c]);
  rgb[3] = Narrow(depth, yuv[3]);
  return rgb;
}

Pixel GreyPixel(std::int32_t grey, Depth depth) {
  const std::int32_t stored = Narrow(depth, grey);
  return {stored, stored, stored, stored};
}

void RgbToYuv(const Picture& input, Picture& output, Depth depth, const Window& window) {
  output.outside = YuvPixel(input.outside, depth);
  ForEach(input, output, window, [&](const Pixel& pixel) { return YuvPixel(pixel, depth); });
}

void YuvToRgb(const Picture& input, Picture& output, Depth depth, const Window& window) {
  ForEach(input, output, window, [&](const Pixel& pixel) { return RgbPixel(pixel, depth); });
}

void ChangeYuv(const Picture& source, const Picture& yuv, Picture& output, const Window& window) {
  for (int y = window.y1; y <= window.y2; ++y) {
    for (int x = window.x1; x <= window.x2; ++x) {
      const Pixel rgb = At(source, x, y);
      const Pixel before = YuvPixel(rgb, Depth::Float);
      const Pixel after = At(yuv, x, y);
      const auto change = [&](std::size_t c) { return FloatOf(after[c]) - FloatOf(before[c]); };
      const std::array<float, 3> colours = RgbOfYuv({change(0), change(1), change(2)});
      Pixel& to = Target(output, x, y);
      for (std::size_t c = 0; c < 3; ++c)
        to[c] = BitsOf(FloatOf(rgb[c]) + colours[c]);
      to[3] = rgb[3];
    }
  }
}

void ExtractRed(const Picture& input, Picture& output, const Window& window) {
  ForEach(input, output, window, [](const Pixel& pixel) { return Pixel{pixel[0], 0, 0, 0}; });
}

void GreyToRgb(const Picture& input, Picture& output, Depth depth, const Window& window) {
  ForEach(input, output, window, [&](const Pixel& pixel) { return GreyPixel(pixel[0], depth); });
}

}  // namespace model
