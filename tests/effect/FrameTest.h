// Fixture: input and output of 16 x 16 pixels, the output marked.
#pragma once

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "tests/effect/EffectBench.h"

namespace vblur {

class FrameTest : public testing::Test {
 protected:
  static constexpr std::int32_t kSide = 16;

  FrameTest() {
    Paint<Pixel8>(bench.input, kSide, kSide, Checks);
    Paint<Pixel8>(bench.output, kSide, kSide, Marker);
  }

  static Pixel8 Checks(std::int32_t x, std::int32_t y) {
    const auto value = static_cast<std::uint8_t>((x / 3 + y / 2) % 2 * 200 + x);
    return {value, static_cast<std::uint8_t>(255 - value), static_cast<std::uint8_t>(y * 9), 128};
  }
  static Pixel8 Marker(std::int32_t, std::int32_t) { return {1, 2, 3, 4}; }

  void ExpectOutput(const std::function<Pixel8(std::int32_t, std::int32_t)>& colour) {
    for (std::int32_t y = 0; y < kSide; ++y) {
      for (std::int32_t x = 0; x < kSide; ++x)
        ASSERT_EQ(At<Pixel8>(bench.output, x, y), colour(x, y)) << "x " << x << ", y " << y;
    }
  }
  std::vector<Pixel8> Pixels() const {
    const auto* first = reinterpret_cast<const Pixel8*>(bench.output.Row(0));
    return {first, first + kSide * kSide};
  }

  EffectBench bench{kSide, kSide};
};

}  // namespace vblur
