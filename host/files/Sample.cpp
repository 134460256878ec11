#include "host/files/Sample.h"

#include <algorithm>
#include <cmath>
#include <cstring>

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

// The range of a depth, half a step more on either side.
struct Carried {
  float low;
  float high;

  bool Holds(float value) const { return value >= low && value <= high; }
};

constexpr Carried CarriedBy(std::int32_t depth) {
  return depth == 8 ? Carried{-0.5f / 255.0f, 255.5f / 255.0f} : Carried{-32768.5f / 16384.0f, 32767.5f / 16384.0f};
}

// Checks all channels, taken or not: a loop without conditions is fast, and most rows are within.
bool AllWithin(const float* samples, std::size_t count, Carried carried) {
  std::uint32_t beyond = 0;
  for (std::size_t i = 0; i < count; ++i)
    beyond |= static_cast<std::uint32_t>(!(samples[i] >= carried.low)) |
              static_cast<std::uint32_t>(!(samples[i] <= carried.high));
  return beyond == 0;
}

void AddSample(float value, Carried carried, BeyondRange& beyond) {
  if (carried.Holds(value)) return;
  if (std::isnan(value)) {
    ++beyond.notNumbers;
    return;
  }
  beyond.lowest = beyond.count == 0 ? value : std::min(beyond.lowest, value);
  beyond.highest = beyond.count == 0 ? value : std::max(beyond.highest, value);
  ++beyond.count;
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
  action(static_cast<const std::int16_t*>(nullptr));
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
  const Carried carried = CarriedBy(depth);
  if (AllWithin(values, width * static_cast<std::size_t>(channels), carried)) return;
  // A grey picture's channel counts once.
  const bool grey = choice.red == choice.green && choice.red == choice.blue;
  for (std::size_t x = 0; x < width; ++x, values += channels) {
    for (const int channel : {choice.red, grey ? -1 : choice.green, grey ? -1 : choice.blue, choice.alpha}) {
      if (channel >= 0) AddSample(values[channel], carried, beyond);
    }
  }
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
