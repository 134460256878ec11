#include "host/hosted/LinearLight.h"

#include <cstdint>

#include "host/hosted/LinearCurve.h"
#include "host/hosted/LinearRows.h"
#include "host/hosted/Premultiply.h"

namespace vblur::host {

namespace {

void SendThrough(HostImage& image, HostRows rows, void (*pixels)(float*, std::int32_t), bool premultiplied) {
  if (premultiplied) DivideByAlpha(image, rows);
  for (std::int32_t y = rows.begin; y < rows.end; ++y)
    pixels(reinterpret_cast<float*>(image.Row(y)), image.Width());
  if (premultiplied) MultiplyByAlpha(image, rows);
}

}  // namespace

float LinearOf(float encoded) {
  return SentThrough<Decoding>(encoded);
}

float EncodedOf(float linear) {
  return SentThrough<Encoding>(linear);
}

void DecodeColours(HostImage& image, HostRows rows, bool premultiplied) {
  SendThrough(image, rows, DecodePixels, premultiplied);
}

void EncodeColours(HostImage& image, HostRows rows, bool premultiplied) {
  SendThrough(image, rows, EncodePixels, premultiplied);
}

}  // namespace vblur::host
