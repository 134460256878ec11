#include "host/files/Sample.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

// The nearest integer to x / y, halves away from zero, found by its distance.
std::int64_t NearestQuotient(std::int64_t x, std::int64_t y) {
  const std::int64_t size = std::abs(x);
  std::int64_t best = size / y;
  if (2 * (size - best * y) >= y) ++best;
  return x < 0 ? -best : best;
}

template <typename Component, typename Sample>
void CheckAllSamplesRead(ComponentUse use, std::int64_t full) {
  constexpr std::int64_t kRange = std::numeric_limits<Sample>::max();
  for (std::int64_t s = 0; s <= kRange; ++s) {
    ASSERT_EQ(FromSample<Component>(static_cast<Sample>(s), use), NearestQuotient(s * full, kRange)) << s;
  }
}

TEST(Sample, ReadsEveryUnsignedSampleToTheNearest) {
  using enum ComponentUse;
  CheckAllSamplesRead<std::uint8_t, std::uint8_t>(Colour, 255);
  CheckAllSamplesRead<std::uint8_t, std::uint16_t>(Colour, 255);
  CheckAllSamplesRead<std::int16_t, std::uint8_t>(Colour, 16384);
  CheckAllSamplesRead<std::int16_t, std::uint16_t>(Colour, 16384);
  CheckAllSamplesRead<std::uint8_t, std::uint8_t>(Amount, 255);
  CheckAllSamplesRead<std::uint8_t, std::uint16_t>(Amount, 255);
  CheckAllSamplesRead<std::int16_t, std::uint8_t>(Amount, 32767);
  CheckAllSamplesRead<std::int16_t, std::uint16_t>(Amount, 32767);
}

TEST(Sample, WritesEveryComponentToTheNearest) {
  for (std::int32_t v = -32768; v <= 32767; ++v) {
    const auto component = static_cast<std::int16_t>(v);
    const std::int64_t limited = std::clamp(v, 0, 16384);
    ASSERT_EQ(ToSample<std::uint16_t>(component), NearestQuotient(limited * 65535, 16384)) << v;
    ASSERT_EQ(ToSample<std::uint8_t>(component), NearestQuotient(limited * 255, 16384)) << v;
    ASSERT_EQ(ToSample<float>(component) * 16384.0, v);
  }
  for (std::int32_t v = 0; v <= 255; ++v) {
    const auto component = static_cast<std::uint8_t>(v);
    ASSERT_EQ(ToSample<std::uint8_t>(component), v);
    ASSERT_EQ(ToSample<std::uint16_t>(component), v * 257);
    ASSERT_EQ(ToSample<float>(component), static_cast<float>(v / 255.0));
  }
}

TEST(Sample, EverythingThatFitsComesBack) {
  for (std::int32_t v = 0; v <= 255; ++v) {
    const auto component = static_cast<std::uint8_t>(v);
    ASSERT_EQ(FromSample<std::uint8_t>(ToSample<std::uint16_t>(component)), v);
    ASSERT_EQ(FromSample<std::uint8_t>(ToSample<float>(component)), v);
    ASSERT_EQ(ToSample<std::uint8_t>(FromSample<std::int16_t>(component)), v);
  }
  for (std::int32_t v = -32768; v <= 32767; ++v) {
    const auto component = static_cast<std::int16_t>(v);
    ASSERT_EQ(FromSample<std::int16_t>(ToSample<float>(component)), v);
    if (v >= 0 && v <= 16384) {
      ASSERT_EQ(FromSample<std::int16_t>(ToSample<std::uint16_t>(component)), v);
    }
  }
}

TEST(Sample, FloatsAreRoundedAsIfExactly) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> any(-2.2f, 2.2f);
  for (int i = 0; i < 200000; ++i) {
    const float value = any(random);
    const long double exact = static_cast<long double>(value);
    ASSERT_EQ(FromSample<std::int16_t>(value), std::clamp(std::lround(exact * 16384), -32768L, 32767L)) << value;
    ASSERT_EQ(FromSample<std::uint8_t>(value), std::clamp(std::lround(exact * 255), 0L, 255L)) << value;
    ASSERT_EQ(FromSample<std::int16_t>(value, ComponentUse::Amount),
              std::clamp(std::lround(exact * 32767), -32768L, 32767L));
  }
  EXPECT_EQ(FromSample<std::int16_t>(0.5f / 16384), 1);
  EXPECT_EQ(FromSample<std::int16_t>(-0.5f / 16384), -1);
  EXPECT_EQ(FromSample<std::int16_t>(std::nextafterf(0.5f / 16384, 0.0f)), 0);
}

TEST(Sample, WhatIsNoNumberHasAMeaning) {
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(FromSample<std::int16_t>(std::nanf("")), 0);
  EXPECT_EQ(FromSample<std::uint8_t>(std::nanf("")), 0);
  EXPECT_EQ(FromSample<std::int16_t>(infinity), 32767);
  EXPECT_EQ(FromSample<std::int16_t>(-infinity), -32768);
  EXPECT_EQ(FromSample<std::uint8_t>(infinity), 255);
  EXPECT_EQ(FromSample<std::uint8_t>(-infinity), 0);
  EXPECT_EQ(FromSample<std::int16_t>(std::numeric_limits<float>::max()), 32767);
  EXPECT_EQ(FromSample<std::int16_t>(std::numeric_limits<float>::denorm_min()), 0);
}

TEST(Sample, RowsTakeTheGivenChannels) {
  const std::uint8_t samples[] = {1, 2, 3, 4, 5, 6};  // two pixels of three channels
  std::uint8_t pixels[8] = {};
  ReadColourRow(samples, SampleKind::Unsigned8, 3, {2, -1, 0, 1}, 8, pixels, 2);
  const std::uint8_t chosen[] = {3, 0, 1, 2, 6, 0, 4, 5};
  EXPECT_EQ(std::memcmp(pixels, chosen, sizeof chosen), 0);

  std::int16_t wide[8] = {};
  ReadColourRow(samples, SampleKind::Unsigned8, 3, {0, 0, 0, -1}, 16, wide, 2);
  EXPECT_EQ(wide[0], 64);
  EXPECT_EQ(wide[3], 16384);

  std::int16_t amounts[2] = {};
  ReadMaskRow(samples, SampleKind::Unsigned8, 3, 0, 16, amounts, 2);
  EXPECT_EQ(amounts[0], 128);
  EXPECT_EQ(amounts[1], 514);

  float floats[6] = {};
  const std::int16_t source[] = {16384, -8192, 0, 7, 32767, -32768, 1, 7};
  WriteColourRow(source, 16, floats, SampleKind::Float, 3, 2);
  const float written[] = {1.0f, -0.5f, 0.0f, 32767 / 16384.0f, -2.0f, 1 / 16384.0f};
  for (std::size_t i = 0; i < std::size(written); ++i)
    EXPECT_EQ(floats[i], written[i]) << i;
}

TEST(Sample, WhatATypeDoesNotHoldIsCountedFromHalfAStepOn) {
  const auto count = [](SampleType type, std::vector<std::int16_t> values) {
    for (std::size_t i = 0; i < values.size(); i += 4)
      values.insert(values.begin() + static_cast<std::ptrdiff_t>(i), {-32768, -32768, 32767});
    BeyondRange beyond;
    AddBeyondType(values.data(), 16, 3, RangeOf(type), values.size() / 4, beyond);
    return beyond;
  };
  using enum SampleType;
  EXPECT_EQ(count(Unsigned8, {0, 16384, 16416, -32}).count, 0);
  EXPECT_EQ(count(Unsigned16, {0, 16384}).count, 0);
  EXPECT_EQ(count(Unsigned16, {16385, -1}).count, 2);
  EXPECT_EQ(count(Unsigned10, {16392, -8, 16393, -9}).count, 2);
  EXPECT_EQ(count(Half, {32767, -32768}).count, 0);
  EXPECT_EQ(count(Float, {32767, -32768}).count, 0);
  const BeyondRange beyond = count(Unsigned8, {-33, 24576, 16417, 0});
  EXPECT_EQ(FormatBeyond(beyond, "0 to 1, which uint8 samples hold"),
            "3 components from -0.00201416 to 1.5 clipped to 0 to 1, which uint8 samples hold");
  EXPECT_EQ(FormatBeyond({}, "all"), "");
}

TEST(Sample, HalvesAreFloats) {
  for (std::uint32_t bits = 0; bits < 0x10000; ++bits) {
    const auto half = static_cast<std::uint16_t>(bits);
    const float value = FloatOfHalf(half);
    const int exponent = static_cast<int>(bits >> 10 & 31);
    const int fraction = static_cast<int>(bits & 1023);
    EXPECT_EQ(std::signbit(value), bits >> 15 != 0) << bits;
    if (exponent == 31) {
      EXPECT_EQ(std::isnan(value), fraction != 0) << bits;
      EXPECT_EQ(std::isinf(value), fraction == 0) << bits;
      continue;
    }
    const double size = exponent == 0 ? std::ldexp(fraction, -24) : std::ldexp(1024 + fraction, exponent - 25);
    EXPECT_EQ(std::abs(value), size) << bits;
    EXPECT_EQ(HalfOf(value), half);
  }
}

TEST(Sample, EveryHalfComesBackFromItsFloat) {
  EXPECT_EQ(HalfOf(0.0f), 0);
  EXPECT_EQ(HalfOf(-0.0f), 0x8000);
  EXPECT_EQ(HalfOf(65519.0f), 0x7bff);
  EXPECT_EQ(HalfOf(65520.0f), 0x7c00);
  EXPECT_EQ(HalfOf(-std::numeric_limits<float>::infinity()), 0xfc00);
  EXPECT_EQ(HalfOf(std::numeric_limits<float>::quiet_NaN()) & 0x7e00, 0x7e00);
  for (std::uint16_t bits = 0; bits < 0x7c00; ++bits) {
    const int exponent = bits >> 10;
    const int fraction = bits & 0x3ff;
    const float value = exponent == 0 ? std::ldexp(static_cast<float>(fraction), -24)
                                      : std::ldexp(static_cast<float>(1024 + fraction), exponent - 25);
    ASSERT_EQ(HalfOf(value), bits);
    ASSERT_EQ(HalfOf(-value), bits | 0x8000);
  }
}

template <typename Sample>
void CheckAllSamplesAsFloats() {
  constexpr std::uint32_t kRange = std::numeric_limits<Sample>::max();
  for (std::uint32_t s = 0; s <= kRange; ++s) {
    const auto sample = static_cast<Sample>(s);
    const auto component = FromSample<float>(sample);
    ASSERT_EQ(component, static_cast<float>(static_cast<long double>(s) / kRange)) << s;
    ASSERT_EQ(FromSample<float>(sample, ComponentUse::Amount), component);
    ASSERT_EQ(ToSample<Sample>(component), sample);
  }
}

TEST(Sample, FloatsHoldEveryUnsignedSample) {
  CheckAllSamplesAsFloats<std::uint8_t>();
  CheckAllSamplesAsFloats<std::uint16_t>();
  for (std::uint32_t step = 0; step < 1024; ++step) {
    ASSERT_EQ(ToPackedSample<10>(FromSample<float>(sample::Spread<10>(step))), sample::Spread<10>(step));
  }
  for (std::uint32_t step = 0; step < 4096; ++step) {
    ASSERT_EQ(ToPackedSample<12>(FromSample<float>(sample::Spread<12>(step))), sample::Spread<12>(step));
  }
}

TEST(Sample, FloatsOfAPictureAreFiniteHalvesAtMost) {
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(FromSample<float>(std::nanf("")), 0.0f);
  EXPECT_EQ(FromSample<float>(infinity), 65504.0f);
  EXPECT_EQ(FromSample<float>(-infinity), -65504.0f);
  EXPECT_EQ(FromSample<float>(65505.0f), 65504.0f);
  EXPECT_EQ(FromSample<float>(-65504.0f), -65504.0f);
  EXPECT_EQ(FromSample<float>(std::numeric_limits<float>::denorm_min()), std::numeric_limits<float>::denorm_min());
  EXPECT_EQ(FromSample<float>(1.0f / 3.0f), 1.0f / 3.0f);
  EXPECT_EQ(FromSample<float>(0.1), 0.1f);
}

TEST(Sample, WrittenFloatsAreRoundedOnce) {
  EXPECT_EQ(ToSample<float>(100000.0f), 100000.0f);
  EXPECT_EQ(ToSample<float>(-7.25f), -7.25f);
  EXPECT_EQ(ToSample<std::uint8_t>(0.5f / 255), 1);
  EXPECT_EQ(ToSample<std::uint8_t>(std::nextafterf(0.5f / 255, 0.0f)), 0);
  EXPECT_EQ(ToSample<std::uint8_t>(1.5f), 255);
  EXPECT_EQ(ToSample<std::uint16_t>(-0.5f), 0);
  EXPECT_EQ(ToSample<std::uint8_t>(std::nanf("")), 0);
  EXPECT_EQ(ToHalfSample(1.0f / 3.0f), HalfOf(1.0f / 3.0f));
  EXPECT_EQ(ToHalfSample(1e6f), 0x7bff);
  EXPECT_EQ(ToHalfSample(-1e6f), 0xfbff);
}

TEST(Sample, RowsOfFloatsTakeAndGiveChannels) {
  const std::uint8_t samples[] = {51, 255};
  float pixels[8] = {};
  ReadColourRow(samples, SampleKind::Unsigned8, 1, {0, 0, 0, -1}, 32, pixels, 2);
  const float read[] = {0.2f, 0.2f, 0.2f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f};
  EXPECT_EQ(std::memcmp(pixels, read, sizeof read), 0);

  const float amounts[] = {0.25f, -3.0f};
  float mask[2] = {};
  ReadMaskRow(amounts, SampleKind::Float, 1, 0, 32, mask, 2);
  EXPECT_EQ(std::memcmp(mask, amounts, sizeof amounts), 0);

  const float colours[] = {0.5f, 2.0f, -1.0f, 9.0f};
  std::uint16_t written[3] = {};
  WriteColourRow(colours, 32, written, SampleKind::Unsigned16, 3, 1);
  EXPECT_EQ(written[0], 32768);
  EXPECT_EQ(written[1], 65535);
  EXPECT_EQ(written[2], 0);
}

TEST(Sample, WhatFloatsDoNotCarryIsCounted) {
  const float infinity = std::numeric_limits<float>::infinity();
  const float samples[] = {65504.0f, -65505.0f, infinity, 1.0f, std::nanf(""), 3.0f, 4.0f, 5.0f};
  BeyondRange beyond;
  AddBeyondRange(samples, SampleKind::Float, 4, {}, 32, 2, beyond);
  EXPECT_EQ(FormatBeyond(beyond, LimitsOf(32)),
            "2 components from -65505 to inf clipped to -65504 to 65504, which 32 bits carry; "
            "1 component without a value (NaN) read as 0");
  BeyondRange all;
  EXPECT_TRUE(all.IsEmpty());
  all.Add(beyond);
  all.Add({.count = 1, .lowest = 7e4f, .highest = 7e4f, .notNumbers = 2});
  EXPECT_EQ(all.count, 3);
  EXPECT_EQ(all.lowest, -65505.0f);
  EXPECT_EQ(all.highest, infinity);
  EXPECT_EQ(all.notNumbers, 3);
}

TEST(Sample, WhatATypeDoesNotHoldOfFloatsIsCounted) {
  const float pixels[] = {0.0f, 0.0f, 0.0f, 1.001f, 9.0f, 9.0f, 9.0f, -70000.0f, 9.0f, 9.0f, 9.0f, std::nanf("")};
  const auto found = [&](SampleType type) {
    BeyondRange beyond;
    AddBeyondType(pixels, 32, 3, RangeOf(type), 3, beyond);
    return beyond.IsEmpty() ? "" : FormatBeyond(beyond, LimitsOf(type));
  };
  EXPECT_EQ(found(SampleType::Float), "");
  EXPECT_EQ(found(SampleType::Half),
            "1 component from -70000 to -70000 clipped to -65504 to 65504, which half samples hold; "
            "1 component without a value (NaN) read as 0");
  EXPECT_EQ(found(SampleType::Unsigned8),
            "1 component from -70000 to -70000 clipped to 0 to 1, which uint8 samples hold; "
            "1 component without a value (NaN) read as 0");
}

}  // namespace
}  // namespace vblur::host
