#include "host/hosted/LinearLight.h"

#include <cmath>

#include <gtest/gtest.h>

#include "host/files/Sample.h"
#include "tests/support/host/Pictures.h"

namespace vblur::host {
namespace {

// FNV-1a over the entries from 0 to 32767, low byte first.
std::uint64_t HashOf(std::int16_t (*function)(std::int16_t)) {
  std::uint64_t hash = 0xcbf29ce484222325u;
  for (std::int32_t i = 0; i < 32768; ++i) {
    const auto value = static_cast<std::uint16_t>(function(static_cast<std::int16_t>(i)));
    for (const unsigned byte : {value & 255u, unsigned{value} >> 8}) {
      hash ^= byte;
      hash *= 0x100000001b3u;
    }
  }
  return hash;
}

// Of tables computed with forty decimal digits.
TEST(LinearLight, TheTablesAreTheSameEverywhere) {
  EXPECT_EQ(HashOf(LinearOf), 0x231e3056b46a3b5eu);
  EXPECT_EQ(HashOf(EncodedOf), 0xe1aa06191c45bd6cu);
}

TEST(LinearLight, EightBitSamplesComeBack) {
  for (std::int32_t sample = 0; sample < 256; ++sample) {
    const auto encoded = FromSample<std::int16_t>(static_cast<std::uint8_t>(sample));
    EXPECT_EQ(ToSample<std::uint8_t>(EncodedOf(LinearOf(encoded))), sample);
  }
  EXPECT_EQ(ToSample<std::uint8_t>(EncodedOf(8192)), 188);
  EXPECT_EQ(LinearOf(16384), 16384);
  EXPECT_EQ(EncodedOf(16384), 16384);
}

TEST(LinearLight, ValuesBelowZeroAreMirrored) {
  for (const int value : {1, 5, 8192, 16384, 32767}) {
    const auto above = static_cast<std::int16_t>(value);
    const auto below = static_cast<std::int16_t>(-value);
    EXPECT_EQ(LinearOf(below), -LinearOf(above));
    EXPECT_EQ(EncodedOf(below), -EncodedOf(above));
  }
  EXPECT_EQ(EncodedOf(-32768), -EncodedOf(32767));
  EXPECT_EQ(LinearOf(32767), 32767);
}

TEST(LinearLight, AlphaStays) {
  HostImage image;
  image.Reset(16, 4, 2, 1);
  const std::int32_t before[] = {8192, 0, 16384, 8192, 1000, 2000, 3000, 0};
  for (std::size_t i = 0; i < 8; ++i)
    SetComponent(image, i, before[i]);
  DecodeColours(image, false);
  for (std::size_t i = 0; i < 8; ++i)
    EXPECT_EQ(Component(image, i), i % 4 == 3 ? before[i] : LinearOf(static_cast<std::int16_t>(before[i])));
  EncodeColours(image, false);
  EXPECT_EQ(Component(image, 0), 8192);
  EXPECT_EQ(Component(image, 3), 8192);
}

// The function is that of the straight colour: 0.5 of an alpha of 0.5 is 1.
TEST(LinearLight, PremultipliedColoursAreDividedMeanwhile) {
  HostImage image;
  image.Reset(16, 4, 1, 1);
  const std::int32_t before[] = {8192, 4096, 0, 8192};
  for (std::size_t i = 0; i < 4; ++i)
    SetComponent(image, i, before[i]);
  DecodeColours(image, true);
  EXPECT_EQ(Component(image, 0), 8192);
  EXPECT_EQ(Component(image, 1), LinearOf(8192) / 2 + LinearOf(8192) % 2);
  EncodeColours(image, true);
  EXPECT_EQ(Component(image, 0), 8192);
  EXPECT_EQ(Component(image, 3), 8192);
}

}  // namespace
}  // namespace vblur::host
