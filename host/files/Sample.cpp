#include "host/files/Sample.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace vblur::host {

namespace {

template <typename Component, typename Sample>
void ReadColours(const Sample* samples, int channels, ChannelChoice choice, Component* pixels, std::size_t width) {
  const auto read = [](const Sample* from, int channel, Component absent) {
    return channel < 0 ? absent : FromSample<Component>(from[channel]);
  };
  constexpr auto kFull = static_cast<Component>(FullValue<Component>(ComponentUse::Colour));
  for (std::size_t x = 0; x < width; ++x, samples += channels, pixels += 4) {
    pixels[0] = read(samples, choice.red, 0);
    pixels[1] = read(samples, choice.green, 0);
    pixels[2] = read(samples, choice.blue, 0);
    pixels[3] = read(samples, choice.alpha, kFull);
  }
}

template <typename Component, typename Sample>
void ReadAmounts(const Sample* samples, int channels, int channel, Component* pixels, std::size_t width) {
  for (std::size_t x = 0; x < width; ++x, samples += channels) {
    pixels[x] = FromSample<Component>(samples[channel], ComponentUse::Amount);
  }
}

// The range of a depth, half a step of whole numbers more on either side.
constexpr ValueRange CarriedBy(std::int32_t depth) {
  if (depth == 32) return {-kLargestHalf, kLargestHalf};
  return depth == 8 ? ValueRange{-0.5f / 255.0f, 255.5f / 255.0f}
                    : ValueRange{-32768.5f / 16384.0f, 32767.5f / 16384.0f};
}

// Checks all channels, taken or not: a loop without conditions is fast, and most rows are within.
bool AllWithin(const float* samples, std::size_t count, ValueRange carried) {
  std::uint32_t beyond = 0;
  for (std::size_t i = 0; i < count; ++i)
    beyond |= static_cast<std::uint32_t>(!(samples[i] >= carried.low)) |
              static_cast<std::uint32_t>(!(samples[i] <= carried.high));
  return beyond == 0;
}

// Of every fourth value.
template <typename Component>
bool HoldsAll(const ValueRange& held, const Component* values, std::size_t width) {
  if constexpr (std::is_floating_point_v<Component>) {
    std::uint32_t beyond = 0;
    for (std::size_t x = 0; x < width; ++x)
      beyond |= static_cast<std::uint32_t>(!held.Holds(values[4 * x]));
    return beyond == 0;
  } else {
    Component low = *values;
    Component high = low;
    for (std::size_t x = 1; x < width; ++x) {
      low = std::min(low, values[4 * x]);
      high = std::max(high, values[4 * x]);
    }
    return held.Holds(ToSample<float>(low)) && held.Holds(ToSample<float>(high));
  }
}

void AddSample(float value, ValueRange carried, BeyondRange& beyond) {
  if (carried.Holds(value)) return;
  if (std::isnan(value)) {
    ++beyond.notNumbers;
    return;
  }
  beyond.lowest = beyond.count == 0 ? value : std::min(beyond.lowest, value);
  beyond.highest = beyond.count == 0 ? value : std::max(beyond.highest, value);
  ++beyond.count;
}

template <typename Sample, typename Convert>
void PassEach(const std::byte* from, std::size_t fromStride, std::byte* to, std::size_t stride, std::size_t width,
              Convert convert) {
  for (std::size_t x = 0; x < width; ++x, from += fromStride, to += stride) {
    Sample value;
    std::memcpy(&value, from, sizeof value);
    const auto passed = convert(value);
    std::memcpy(to, &passed, sizeof passed);
  }
}

std::string Counted(std::int64_t count) {
  return std::to_string(count) + (count == 1 ? " component" : " components");
}

template <typename Sample, typename Component>
void WriteColours(const Component* pixels, Sample* samples, int channels, std::size_t width) {
  for (std::size_t x = 0; x < width; ++x, pixels += 4, samples += channels) {
    for (int c = 0; c < channels; ++c)
      samples[c] = ToSample<Sample>(pixels[c]);
  }
}

template <typename Component, typename Convert>
void WriteStrided(const Component* pixels, int component, std::byte* samples, std::size_t stride, std::size_t width,
                  Convert convert) {
  pixels += component;
  for (std::size_t x = 0; x < width; ++x, pixels += 4, samples += stride) {
    const auto sample = convert(*pixels);
    std::memcpy(samples, &sample, sizeof sample);
  }
}

template <typename Component>
void WriteAs(SampleType type, const Component* pixels, int component, std::byte* samples, std::size_t stride,
             std::size_t width) {
  const auto write = [&](auto convert) { WriteStrided(pixels, component, samples, stride, width, convert); };
  switch (type) {
    case SampleType::Unsigned8: return write([](Component c) { return ToSample<std::uint8_t>(c); });
    case SampleType::Unsigned10: return write([](Component c) { return ToPackedSample<10>(c); });
    case SampleType::Unsigned12: return write([](Component c) { return ToPackedSample<12>(c); });
    case SampleType::Unsigned16: return write([](Component c) { return ToSample<std::uint16_t>(c); });
    case SampleType::Half: return write([](Component c) { return ToHalfSample(c); });
    case SampleType::Float: return write([](Component c) { return ToSample<float>(c); });
  }
}

// Calls action with a null pointer to the sample's type.
template <typename Action>
void WithSampleType(SampleKind kind, Action action) {
  switch (kind) {
    case SampleKind::Unsigned8: return action(static_cast<const std::uint8_t*>(nullptr));
    case SampleKind::Unsigned16: return action(static_cast<const std::uint16_t*>(nullptr));
    case SampleKind::Float: return action(static_cast<const float*>(nullptr));
  }
}

template <typename Action>
void WithComponentType(std::int32_t depth, Action action) {
  if (depth == 8) return action(static_cast<const std::uint8_t*>(nullptr));
  if (depth == 16) return action(static_cast<const std::int16_t*>(nullptr));
  action(static_cast<const float*>(nullptr));
}

template <typename Action>
void WithTypes(SampleKind kind, std::int32_t depth, Action action) {
  WithSampleType(kind,
                 [&](auto* sample) { WithComponentType(depth, [&](auto* component) { action(sample, component); }); });
}

template <typename Pointer>
using Target = std::remove_const_t<std::remove_pointer_t<Pointer>>;

}  // namespace

std::size_t SampleBytes(SampleKind kind) {
  switch (kind) {
    case SampleKind::Unsigned8: return 1;
    case SampleKind::Unsigned16: return 2;
    case SampleKind::Float: break;
  }
  return 4;
}

void ReadColourRow(const void* samples, SampleKind kind, int channels, ChannelChoice choice, std::int32_t depth,
                   void* pixels, std::size_t width) {
  WithTypes(kind, depth, [&](auto* sample, auto* component) {
    ReadColours(static_cast<decltype(sample)>(samples), channels, choice,
                static_cast<Target<decltype(component)>*>(pixels), width);
  });
}

void AddBeyondRange(const void* samples, SampleKind kind, int channels, ChannelChoice choice, std::int32_t depth,
                    std::size_t width, BeyondRange& beyond) {
  if (kind != SampleKind::Float) return;
  const auto* values = static_cast<const float*>(samples);
  const ValueRange carried = CarriedBy(depth);
  if (AllWithin(values, width * static_cast<std::size_t>(channels), carried)) return;
  // A grey picture's channel counts once.
  const bool grey = choice.red == choice.green && choice.red == choice.blue;
  for (std::size_t x = 0; x < width; ++x, values += channels) {
    for (const int channel : {choice.red, grey ? -1 : choice.green, grey ? -1 : choice.blue, choice.alpha}) {
      if (channel >= 0) AddSample(values[channel], carried, beyond);
    }
  }
}

void PassSamples(const void* from, SampleKind kind, std::size_t fromStride, void* samples, SampleType type,
                 std::size_t stride, std::size_t width) {
  WithSampleType(kind, [&](auto* typed) {
    using Sample = Target<decltype(typed)>;
    const auto pass = [&](auto convert) {
      PassEach<Sample>(static_cast<const std::byte*>(from), fromStride, static_cast<std::byte*>(samples), stride, width,
                       convert);
    };
    switch (type) {
      case SampleType::Unsigned8: return pass([](Sample s) { return static_cast<std::uint8_t>(sample::StepOf<8>(s)); });
      case SampleType::Unsigned10: return pass([](Sample s) { return sample::Spread<10>(sample::StepOf<10>(s)); });
      case SampleType::Unsigned12: return pass([](Sample s) { return sample::Spread<12>(sample::StepOf<12>(s)); });
      case SampleType::Unsigned16:
        return pass([](Sample s) { return static_cast<std::uint16_t>(sample::StepOf<16>(s)); });
      case SampleType::Half: return pass([](Sample s) { return HalfOf(sample::AsFloat(s)); });
      case SampleType::Float: return pass([](Sample s) { return sample::AsFloat(s); });
    }
  });
}

void BeyondRange::Add(const BeyondRange& other) {
  if (other.count > 0) {
    lowest = count == 0 ? other.lowest : std::min(lowest, other.lowest);
    highest = count == 0 ? other.highest : std::max(highest, other.highest);
    count += other.count;
  }
  notNumbers += other.notNumbers;
}

std::string LimitsOf(std::int32_t depth) {
  const std::string range = depth == 8 ? "0 to 1" : depth == 16 ? "-2 to 2" : "-65504 to 65504";
  return range + ", which " + std::to_string(depth) + " bits carry";
}

std::string LimitsOf(SampleType type) {
  return (type == SampleType::Half ? "-65504 to 65504" : "0 to 1") + std::string(", which ") +
         std::string(NameOf(type)) + " samples hold";
}

std::string FormatBeyond(const BeyondRange& beyond, std::string_view limits) {
  std::string text;
  if (beyond.count > 0) {
    char range[80];
    std::snprintf(range, sizeof range, " from %.6g to %.6g", static_cast<double>(beyond.lowest),
                  static_cast<double>(beyond.highest));
    text = Counted(beyond.count).append(range).append(" clipped to ").append(limits);
  }
  if (beyond.notNumbers > 0) {
    text += (text.empty() ? "" : "; ") + Counted(beyond.notNumbers) + " without a value (NaN) read as 0";
  }
  return text;
}

ValueRange RangeOf(SampleType type) {
  const auto whole = [](float largest) { return ValueRange{-0.5f / largest, 1.0f + 0.5f / largest}; };
  switch (type) {
    case SampleType::Unsigned8: return whole(255.0f);
    case SampleType::Unsigned10: return whole(1023.0f);
    case SampleType::Unsigned12: return whole(4095.0f);
    case SampleType::Unsigned16: return whole(65535.0f);
    case SampleType::Half: {
      constexpr float kHalfStep = 16.0f;
      return {-kLargestHalf - kHalfStep, kLargestHalf + kHalfStep};
    }
    case SampleType::Float: break;
  }
  constexpr float kInfinite = std::numeric_limits<float>::infinity();
  return {-kInfinite, kInfinite};
}

void AddBeyondType(const void* pixels, std::int32_t depth, int component, const ValueRange& held, std::size_t width,
                   BeyondRange& beyond) {
  if (width == 0 || (std::isinf(held.low) && std::isinf(held.high))) return;
  WithComponentType(depth, [&](auto* typed) {
    const auto* values = static_cast<decltype(typed)>(pixels) + component;
    // Most rows are within, so this is fast.
    if (HoldsAll(held, values, width)) return;
    for (std::size_t x = 0; x < width; ++x)
      AddSample(ToSample<float>(values[4 * x]), held, beyond);
  });
}

void ReadMaskRow(const void* samples, SampleKind kind, int channels, int channel, std::int32_t depth, void* pixels,
                 std::size_t width) {
  WithTypes(kind, depth, [&](auto* sample, auto* component) {
    ReadAmounts(static_cast<decltype(sample)>(samples), channels, channel,
                static_cast<Target<decltype(component)>*>(pixels), width);
  });
}

void WriteColourRow(const void* pixels, std::int32_t depth, void* samples, SampleKind kind, int channels,
                    std::size_t width) {
  WithTypes(kind, depth, [&](auto* sample, auto* component) {
    WriteColours(static_cast<decltype(component)>(pixels), static_cast<Target<decltype(sample)>*>(samples), channels,
                 width);
  });
}

std::size_t SampleBytes(SampleType type) {
  if (type == SampleType::Unsigned8) return 1;
  return type == SampleType::Float ? 4 : 2;
}

void WriteComponents(const void* pixels, std::int32_t depth, int component, void* samples, SampleType type,
                     std::size_t stride, std::size_t width) {
  WithComponentType(depth, [&](auto* typed) {
    WriteAs(type, static_cast<decltype(typed)>(pixels), component, static_cast<std::byte*>(samples), stride, width);
  });
}

}  // namespace vblur::host
