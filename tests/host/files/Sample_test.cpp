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

}  // namespace
}  // namespace vblur::host
