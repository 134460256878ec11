#include "host/hosted/LinearLight.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "host/hosted/Premultiply.h"

namespace vblur::host {

namespace {

// The largest half float, which is the most that a picture of floats carries.
constexpr float kMostLight = 65504.0f;

template <int N>
double Power(double y) {
  if constexpr (N == 1) {
    return y;
  } else if constexpr (N % 2 == 0) {
    return Power<N / 2>(y * y);
  } else {
    return Power<N - 1>(y) * y;
  }
}

// x^(-1/N) for a positive x of a float's range, by Newton's iteration from the float whose bits are about those of the
// root: its error is below 2^-4, and each step squares it, times (N + 1) / 2.
template <int N>
double InverseRoot(double x) {
  constexpr double kOneBits = 0x3F800000;
  const auto bits = static_cast<double>(std::bit_cast<std::int32_t>(static_cast<float>(x)));
  const auto guess = static_cast<std::int32_t>(kOneBits + (kOneBits - bits) * (1.0 / N));
  double y = static_cast<double>(std::bit_cast<float>(guess));
  for (int step = 0; step < 5; ++step)
    y *= (N + 1.0) / N - x * (1.0 / N) * Power<N>(y);
  return y;
}

// x^(12/5) and x^(5/12).
double DecodingPower(double x) {
  return Power<3>(x * InverseRoot<5>(x));
}

double EncodingPower(double x) {
  return x * Power<7>(InverseRoot<12>(x));
}

float Mirrored(float value, double (*function)(double)) {
  return static_cast<float>(std::copysign(function(std::fabs(static_cast<double>(value))), static_cast<double>(value)));
}

double Decoded(double x) {
  return x <= 0.04045 ? x * (1.0 / 12.92) : DecodingPower((x + 0.055) * (1.0 / 1.055));
}

double Encoded(double x) {
  return x <= 0.0031308 ? x * 12.92 : 1.055 * EncodingPower(x) - 0.055;
}

void SendThrough(HostImage& image, float (*function)(float), bool premultiplied) {
  if (premultiplied) DivideByAlpha(image);
  for (std::int32_t y = 0; y < image.Height(); ++y) {
    std::byte* at = image.Row(y);
    for (std::int32_t x = 0; x < image.Width(); ++x, at += 4 * sizeof(float)) {
      float colours[3];
      std::memcpy(colours, at, sizeof colours);
      for (float& colour : colours)
        colour = function(colour);
      std::memcpy(at, colours, sizeof colours);
    }
  }
  if (premultiplied) MultiplyByAlpha(image);
}

}  // namespace

float LinearOf(float encoded) {
  return std::clamp(Mirrored(encoded, Decoded), -kMostLight, kMostLight);
}

float EncodedOf(float linear) {
  return Mirrored(linear, Encoded);
}

void DecodeColours(HostImage& image, bool premultiplied) {
  SendThrough(image, LinearOf, premultiplied);
}

void EncodeColours(HostImage& image, bool premultiplied) {
  SendThrough(image, EncodedOf, premultiplied);
}

}  // namespace vblur::host
