// Conversion between the samples of picture files and the components of pixels: to nearest, halves away from zero. A
// NaN counts as 0, an infinity as the end of the range.
//
// The effect's full value is 255 at 8 bits, 16384 at 16 bits and 32767 for an amount (a mask at 16
// bits), and 1 at 32 bits, which are floats. 8-bit components hold 0 to 255, 16-bit ones -32768 to 32767. Floats that
// are read are limited to the finite halves; those that are written are whatever the effect made of them.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/jobs/OutputStorage.h"

namespace vblur::host {

// What the samples of a file are read and written as. Everything that is neither unsigned 8 nor
// unsigned 16 bits (half, float, double, wide or signed integers) is handled as Float, full value 1.
enum class SampleKind { Unsigned8, Unsigned16, Float };

std::size_t SampleBytes(SampleKind kind);

// What a component means; it decides the full value at 16 bits.
enum class ComponentUse { Colour, Amount };

template <typename Component>
constexpr std::int32_t FullValue(ComponentUse use) {
  if constexpr (std::is_same_v<Component, std::uint8_t>) return 255;
  if constexpr (std::is_floating_point_v<Component>) return 1;
  return use == ComponentUse::Colour ? 16384 : 32767;
}

// The largest half, and the largest value that a float of a picture carries.
inline constexpr float kLargestHalf = 65504.0f;

namespace sample {

// x / y to the nearest, halves up; x + y / 2 must fit 32 bits.
constexpr std::uint32_t Quotient(std::uint32_t x, std::uint32_t y) {
  return (x + y / 2) / y;
}

constexpr double Nearest(double x) {
  return x < 0 ? x - 0.5 : x + 0.5;
}

// A packed sample over 16 bits, by repeating its upper bits.
template <int bits>
constexpr std::uint16_t Spread(std::uint32_t packed) {
  return static_cast<std::uint16_t>(packed << (16 - bits) | packed >> (2 * bits - 16));
}

// The nearest of the 2^bits - 1 steps of a whole number.
template <int bits, typename Sample>
constexpr std::uint32_t StepOf(Sample value) {
  constexpr std::uint32_t kRange = (1u << bits) - 1;
  if constexpr (std::is_floating_point_v<Sample>) {
    if (!(value > 0.0f)) return 0;
    // Exact: 24 bits times 16 and a half have their place in a double.
    constexpr double kHalf = 0.5;
    return static_cast<std::uint32_t>((value < 1.0f ? static_cast<double>(value) : 1.0) * kRange + kHalf);
  } else {
    constexpr std::uint32_t kOwn = static_cast<Sample>(~Sample{0});
    return Quotient(value * kRange, kOwn);
  }
}

// A whole number as the part of its range, rounded once.
template <typename Sample>
constexpr float AsFloat(Sample value) {
  if constexpr (std::is_floating_point_v<Sample>) {
    return value;
  } else {
    return static_cast<float>(value) / static_cast<float>(static_cast<Sample>(~Sample{0}));
  }
}

template <typename Sample>
constexpr float Carried(Sample value) {
  if (!(value == value)) return 0.0f;
  constexpr Sample kMost{kLargestHalf};
  return static_cast<float>(value < -kMost ? -kMost : value > kMost ? kMost : value);
}

}  // namespace sample

// One file sample as a component.
template <typename Component, typename Sample>
constexpr Component FromSample(Sample value, ComponentUse use = ComponentUse::Colour) {
  constexpr bool kEight = std::is_same_v<Component, std::uint8_t>;
  const auto full = FullValue<Component>(use);
  if constexpr (std::is_floating_point_v<Component> && std::is_floating_point_v<Sample>) {
    return sample::Carried(value);
  } else if constexpr (std::is_floating_point_v<Component>) {
    return sample::AsFloat(value);
  } else if constexpr (std::is_floating_point_v<Sample>) {
    constexpr double kLow = kEight ? 0.0 : -32768.0;
    constexpr double kHigh = kEight ? 255.0 : 32767.0;
    // A float times a full value of up to 15 bits is exact in a double.
    const double scaled = static_cast<double>(value) * full;
    if (!(scaled == scaled)) return 0;
    const double limited = scaled < kLow ? kLow : scaled > kHigh ? kHigh : scaled;
    return static_cast<Component>(static_cast<std::int32_t>(sample::Nearest(limited)));
  } else {
    constexpr std::uint32_t kRange = static_cast<Sample>(~Sample{0});
    if constexpr (kEight && kRange == 255) return value;
    // At most 65535 * 32767, about 2^31.
    return static_cast<Component>(sample::Quotient(value * static_cast<std::uint32_t>(full), kRange));
  }
}

// One colour component as a file sample.
template <typename Sample, typename Component>
constexpr Sample ToSample(Component value) {
  constexpr std::int32_t kFull = FullValue<Component>(ComponentUse::Colour);
  if constexpr (std::is_floating_point_v<Sample>) {
    return static_cast<Sample>(value) / static_cast<Sample>(kFull);
  } else if constexpr (std::is_floating_point_v<Component>) {
    return static_cast<Sample>(sample::StepOf<8 * sizeof(Sample)>(value));
  } else {
    constexpr std::uint32_t kRange = static_cast<Sample>(~Sample{0});
    if constexpr (kFull == kRange) return value;
    const auto limited = static_cast<std::uint32_t>(value < 0 ? 0 : value > kFull ? kFull : value);
    // At most 16384 * 65535, below 2^30.
    return static_cast<Sample>(sample::Quotient(limited * kRange, static_cast<std::uint32_t>(kFull)));
  }
}

// The same as one of the 2^bits - 1 steps of a packed sample, spread over 16 bits by repeating its upper bits.
template <int bits, typename Component>
constexpr std::uint16_t ToPackedSample(Component value) {
  if constexpr (std::is_floating_point_v<Component>) return sample::Spread<bits>(sample::StepOf<bits>(value));
  constexpr std::int32_t kFull = FullValue<Component>(ComponentUse::Colour);
  constexpr std::uint32_t kRange = (1u << bits) - 1;
  const auto limited = static_cast<std::uint32_t>(value < 0 ? 0 : value > kFull ? kFull : value);
  const std::uint32_t packed = sample::Quotient(limited * kRange, static_cast<std::uint32_t>(kFull));
  return sample::Spread<bits>(packed);
}

// The bits of the nearest half, halves to even.
constexpr std::uint16_t HalfOf(float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t sign = bits >> 16 & 0x8000u;
  const std::uint32_t magnitude = bits & 0x7fffffffu;
  constexpr std::uint32_t kInfinite = 0x7f800000u;
  constexpr std::uint32_t kBeyond = 0x477ff000u;  // rounds to 65536
  constexpr std::uint32_t kNormal = 0x38800000u;  // 2^-14
  if (magnitude > kInfinite) return static_cast<std::uint16_t>(sign | 0x7e00u | (magnitude >> 13 & 0x3ffu));
  if (magnitude >= kBeyond) return static_cast<std::uint16_t>(sign | 0x7c00u);
  if (magnitude < kNormal) {
    // The steps of floats from 1/2 on are those of the smallest halves.
    const float moved = std::bit_cast<float>(magnitude) + 0.5f;
    return static_cast<std::uint16_t>(sign |
                                      (std::bit_cast<std::uint32_t>(moved) - std::bit_cast<std::uint32_t>(0.5f)));
  }
  constexpr std::uint32_t kRebias = 112u << 23;
  const std::uint32_t rounded = magnitude - kRebias + 0x0fffu + (magnitude >> 13 & 1u);
  return static_cast<std::uint16_t>(sign | rounded >> 13);
}

// Exact.
constexpr float FloatOfHalf(std::uint16_t half) {
  constexpr std::uint32_t kInfinite = 0x7c00u;
  constexpr float kRebias = 0x1p112f;
  const std::uint32_t magnitude = half & 0x7fffu;
  const std::uint32_t sign = (half & 0x8000u) << 16;
  const std::uint32_t bits = magnitude < kInfinite
                                 ? std::bit_cast<std::uint32_t>(std::bit_cast<float>(magnitude << 13) * kRebias)
                                 : 0x7f800000u | magnitude << 13;
  return std::bit_cast<float>(sign | bits);
}

// Limited to the finite ones.
template <typename Component>
constexpr std::uint16_t ToHalfSample(Component value) {
  const auto number = ToSample<float>(value);
  return HalfOf(number < -kLargestHalf ? -kLargestHalf : number > kLargestHalf ? kLargestHalf : number);
}

// The index of red, green, blue and alpha among a file's channels; -1: not in the file, which makes a colour 0 and
// alpha full.
struct ChannelChoice {
  int red = 0;
  int green = 1;
  int blue = 2;
  int alpha = 3;

  friend bool operator==(const ChannelChoice&, const ChannelChoice&) = default;
};

// One row of a file, `channels` samples a pixel, as pixels of four components. `samples` holds kind's
// type, `pixels` components of `depth` bits (8, 16 or 32), four for each of `width` pixels.
void ReadColourRow(const void* samples, SampleKind kind, int channels, ChannelChoice choice, std::int32_t depth,
                   void* pixels, std::size_t width);
// One channel of a row of a file as the amounts of a mask, one component a pixel.
void ReadMaskRow(const void* samples, SampleKind kind, int channels, int channel, std::int32_t depth, void* pixels,
                 std::size_t width);
// What a depth does not carry of a file's samples: values beyond its range by more than half a step, infinities among
// them, and NaN.
struct BeyondRange {
  std::int64_t count = 0;
  float lowest = 0.0f;
  float highest = 0.0f;
  std::int64_t notNumbers = 0;

  bool IsEmpty() const { return count == 0 && notNumbers == 0; }
  void Add(const BeyondRange& other);
};
// "0 to 1, which 8 bits carry", for FormatBeyond.
std::string LimitsOf(std::int32_t depth);
// "0 to 1, which uint8 samples hold".
std::string LimitsOf(SampleType type);
// "2 components from -2 to 1.99 clipped to 0 to 1, which 8 bits carry", with the limits "0 to 1, which 8 bits carry";
// empty where nothing is lost.
std::string FormatBeyond(const BeyondRange& beyond, std::string_view limits);
// Adds what ReadColourRow loses of a row. Integers lose nothing.
void AddBeyondRange(const void* samples, SampleKind kind, int channels, ChannelChoice choice, std::int32_t depth,
                    std::size_t width, BeyondRange& beyond);

// One row of four-component pixels as samples of a file: the first `channels` (3 or 4) of each pixel.
void WriteColourRow(const void* pixels, std::int32_t depth, void* samples, SampleKind kind, int channels,
                    std::size_t width);

// Of one sample as the picture library takes it: samples of 10 and 12 bits come in 16.
std::size_t SampleBytes(SampleType type);
// The values that a type holds, half a step more on either side: whole numbers from 0 to 1, halves the finite ones,
// floats all.
struct ValueRange {
  float low;
  float high;

  bool Holds(float value) const { return value >= low && value <= high; }
};
ValueRange RangeOf(SampleType type);
// Adds the values beyond a range of one component of a row of four-component pixels. Of a range without ends nothing.
void AddBeyondType(const void* pixels, std::int32_t depth, int component, const ValueRange& held, std::size_t width,
                   BeyondRange& beyond);
// Samples of a file as samples of another: as they are where the type holds them, else the nearest that it holds, 0 for
// a NaN. `fromStride` and `stride` are bytes.
void PassSamples(const void* from, SampleKind kind, std::size_t fromStride, void* samples, SampleType type,
                 std::size_t stride, std::size_t width);
// One component of a row of four-component pixels as samples of a file, `stride` bytes apart.
void WriteComponents(const void* pixels, std::int32_t depth, int component, void* samples, SampleType type,
                     std::size_t stride, std::size_t width);

}  // namespace vblur::host
