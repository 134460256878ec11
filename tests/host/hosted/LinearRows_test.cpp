#include "host/hosted/LinearRows.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include "host/hosted/LinearLight.h"

namespace vblur::host {
namespace {

// Finite ones of any sign and size up to what is carried.
float AnyComponent(std::mt19937& random) {
  if (random() % 4 == 0) return static_cast<float>(random() % 256) / 255.0f;
  const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
  return std::fabs(value) <= 65504.0f ? value : 0.0f;
}

TEST(LinearRows, EveryInstructionSetGivesThePlainBits) {
  std::mt19937 random(1);
  int sets = 0;
  for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
    hwy::SetSupportedTargetsForTest(target);
    ++sets;
    for (std::int32_t round = 0; round < 300; ++round) {
      const auto count = static_cast<std::int32_t>(random() % 70);
      // A pixel more, which stays.
      std::vector<float> pixels(4 * static_cast<std::size_t>(count) + 4);
      for (float& component : pixels)
        component = AnyComponent(random);
      for (const bool decodes : {false, true}) {
        std::vector<float> expected = pixels;
        for (std::size_t i = 0; i + 4 < expected.size(); ++i) {
          if (i % 4 != 3) expected[i] = decodes ? LinearOf(expected[i]) : EncodedOf(expected[i]);
        }
        std::vector<float> changed = pixels;
        (decodes ? DecodePixels : EncodePixels)(changed.data(), count);
        ASSERT_EQ(std::memcmp(changed.data(), expected.data(), changed.size() * sizeof(float)), 0)
            << hwy::TargetName(target) << ", " << count << " pixels";
      }
    }
  }
  hwy::SetSupportedTargetsForTest(0);
  EXPECT_GT(sets, 0);
}

}  // namespace
}  // namespace vblur::host
