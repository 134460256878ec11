#include "host/hosted/LinearLight.h"

#include <bit>
#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "host/files/Sample.h"
#include "tests/support/host/Pictures.h"

namespace vblur::host {
namespace {

double DecodedBy(double x) {
  return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}
double EncodedBy(double x) {
  return x <= 0.0031308 ? x * 12.92 : 1.055 * std::pow(x, 1.0 / 2.4) - 0.055;
}

// FNV-1a over the bits of the function at 65,536 values from 0 to 16, low byte first.
std::uint64_t HashOf(float (*function)(float)) {
  std::uint64_t hash = 0xcbf29ce484222325u;
  for (std::int32_t i = 0; i < 65536; ++i) {
    auto value = std::bit_cast<std::uint32_t>(function(static_cast<float>(i) / 4096.0f));
    for (int byte = 0; byte < 4; ++byte, value >>= 8) {
      hash ^= value & 255u;
      hash *= 0x100000001b3u;
    }
  }
  return hash;
}

TEST(LinearLight, HasTheSameBitsEverywhere) {
  EXPECT_EQ(HashOf(LinearOf), 13694492757425494935u);
  EXPECT_EQ(HashOf(EncodedOf), 6468667752579500085u);
}

TEST(LinearLight, IsTheTransferFunctionOfSrgb) {
  for (int i = 1; i < 200000; ++i) {
    // From 2^-20 to 2^10.
    const double x = std::exp2(-20.0 + 30.0 * i / 200000.0);
    const auto value = static_cast<float>(x);
    const double decoded = DecodedBy(static_cast<double>(value));
    const double encoded = EncodedBy(static_cast<double>(value));
    if (decoded < 65504.0) {
      ASSERT_NEAR(static_cast<double>(LinearOf(value)) / decoded, 1.0, 1.0 / (1 << 23)) << value;
    }
    ASSERT_NEAR(static_cast<double>(EncodedOf(value)) / encoded, 1.0, 1.0 / (1 << 23)) << value;
  }
  EXPECT_EQ(LinearOf(0.0f), 0.0f);
  EXPECT_EQ(EncodedOf(0.0f), 0.0f);
  EXPECT_EQ(LinearOf(1.0f), 1.0f);
  EXPECT_EQ(EncodedOf(1.0f), 1.0f);
}

TEST(LinearLight, WholeSamplesComeBack) {
  for (std::int32_t sample = 0; sample < 256; ++sample)
    ASSERT_EQ(std::floor(EncodedOf(LinearOf(static_cast<float>(sample) / 255.0f)) * 255.0f + 0.5f),
              static_cast<float>(sample));
  for (std::int32_t sample = 0; sample < 65536; ++sample)
    ASSERT_EQ(std::floor(EncodedOf(LinearOf(static_cast<float>(sample) / 65535.0f)) * 65535.0f + 0.5f),
              static_cast<float>(sample));
}

TEST(LinearLight, ValuesBelowZeroAreMirrored) {
  for (const float value : {1e-6f, 0.01f, 0.5f, 1.0f, 7.5f}) {
    EXPECT_EQ(LinearOf(-value), -LinearOf(value));
    EXPECT_EQ(EncodedOf(-value), -EncodedOf(value));
  }
}

// The light of an encoded 400 is more than a picture carries.
TEST(LinearLight, StaysWithinWhatIsCarried) {
  EXPECT_EQ(LinearOf(400.0f), 65504.0f);
  EXPECT_EQ(LinearOf(-65504.0f), -65504.0f);
  EXPECT_LT(EncodedOf(65504.0f), 110.0f);
}

void Fill(HostImage& image, std::initializer_list<float> components) {
  image.Reset(32, 4, static_cast<std::int32_t>(components.size() / 4), 1);
  std::memcpy(image.Row(0), components.begin(), components.size() * sizeof(float));
}

float ComponentOf(const HostImage& image, std::size_t i) {
  float value = 0.0f;
  std::memcpy(&value, image.Row(0) + i * sizeof value, sizeof value);
  return value;
}

TEST(LinearLight, AlphaStays) {
  HostImage image;
  Fill(image, {0.5f, 0.0f, 1.0f, 0.5f, 0.06f, 0.12f, 0.18f, 0.0f});
  DecodeColours(image, image.AllRows(), false);
  EXPECT_EQ(ComponentOf(image, 0), LinearOf(0.5f));
  EXPECT_EQ(ComponentOf(image, 3), 0.5f);
  EXPECT_EQ(ComponentOf(image, 6), LinearOf(0.18f));
  EXPECT_EQ(ComponentOf(image, 7), 0.0f);
  EncodeColours(image, image.AllRows(), false);
  EXPECT_NEAR(ComponentOf(image, 0), 0.5f, 1e-7f);
  EXPECT_EQ(ComponentOf(image, 3), 0.5f);
}

// The function is that of the straight colour: 0.5 of an alpha of 0.5 is 1.
TEST(LinearLight, PremultipliedColoursAreDividedMeanwhile) {
  HostImage image;
  Fill(image, {0.5f, 0.25f, 0.0f, 0.5f});
  DecodeColours(image, image.AllRows(), true);
  EXPECT_EQ(ComponentOf(image, 0), 0.5f);
  EXPECT_EQ(ComponentOf(image, 1), LinearOf(0.5f) * 0.5f);
  EncodeColours(image, image.AllRows(), true);
  EXPECT_EQ(ComponentOf(image, 0), 0.5f);
  EXPECT_NEAR(ComponentOf(image, 1), 0.25f, 1e-7f);
}

}  // namespace
}  // namespace vblur::host
