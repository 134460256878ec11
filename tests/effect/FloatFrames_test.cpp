// Frames of 32-bit floats through all stages.
#include <cmath>

#include <gtest/gtest.h>

#include "platform/OwnFormats.h"
#include "tests/effect/EffectBench.h"
#include "tests/effect/OpenBlur.h"

namespace vblur {
namespace {

using PixelF = std::array<float, 4>;

class FloatFrames : public testing::Test {
 protected:
  static constexpr std::int32_t kSide = 16;

  FloatFrames() {
    Paint<PixelF>(bench.input, kSide, kSide, Checks);
    Paint<PixelF>(bench.output, kSide, kSide, [](std::int32_t, std::int32_t) { return PixelF{7, 7, 7, 7}; });
    bench.Set(PropertyId::Blur, 6.0);
  }

  // Light far above white and colours below black.
  static PixelF Checks(std::int32_t x, std::int32_t y) {
    const float value = (x / 3 + y / 2) % 2 == 0 ? 0.3f : 900.0f;
    return {value, -0.1f * static_cast<float>(x), 1.0f / static_cast<float>(1 + y), 0.7f};
  }

  PixelF Out(std::int32_t x, std::int32_t y) const { return At<PixelF>(bench.output, x, y); }

  void ExpectOutput(const std::function<PixelF(std::int32_t, std::int32_t)>& colour) {
    for (std::int32_t y = 0; y < kSide; ++y) {
      for (std::int32_t x = 0; x < kSide; ++x)
        ASSERT_EQ(Out(x, y), colour(x, y)) << "x " << x << ", y " << y;
    }
  }

  EffectBench bench{kSide, kSide};
};

TEST_F(FloatFrames, WithoutABlurTheyAreCopied) {
  bench.Set(PropertyId::Blur, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

TEST_F(FloatFrames, AFlatAreaKeepsItsValue) {
  const PixelF flat{12.5f, -0.375f, 0.18f, 1.0f};
  Paint<PixelF>(bench.input, kSide, kSide, [&](std::int32_t, std::int32_t) { return flat; });
  for (const double method : {0.0, 1.0}) {
    bench.Set(PropertyId::Method, method);
    EXPECT_EQ(bench.Render(), kOk);
    ExpectOutput([&](std::int32_t, std::int32_t) { return flat; });
  }
}

TEST_F(FloatFrames, LightAboveWhiteSpreads) {
  Paint<PixelF>(bench.input, kSide, kSide, [](std::int32_t x, std::int32_t y) {
    return x == 8 && y == 8 ? PixelF{1000.0f, 0.0f, 0.0f, 1.0f} : PixelF{0.0f, 0.0f, 0.0f, 1.0f};
  });
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_GT(Out(8, 8)[0], 10.0f);
  EXPECT_GT(Out(10, 8)[0], 1.0f);
  EXPECT_EQ(Out(8, 8)[3], 1.0f);
}

TEST_F(FloatFrames, TheResultIsMixedOverTheSource) {
  EXPECT_EQ(bench.Render(), kOk);
  const PixelF blurred = Out(5, 5);
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Set(PropertyId::Blend, 50.0);
  EXPECT_EQ(bench.Render(), kOk);
  const PixelF source = Checks(5, 5);
  for (std::size_t c = 0; c < 4; ++c)
    EXPECT_EQ(Out(5, 5)[c], blurred[c] * 0.5f + source[c] * 0.5f) << c;
}

TEST_F(FloatFrames, AMaskedChannelIsTheSources) {
  bench.Set(PropertyId::MaskGreen, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  for (std::int32_t x = 0; x < kSide; ++x) {
    EXPECT_EQ(Out(x, 7)[1], Checks(x, 7)[1]);
    EXPECT_NE(Out(x, 7)[0], Checks(x, 7)[0]);
  }
}

TEST_F(FloatFrames, AMaskOfFloatsShowsTheEffect) {
  EXPECT_EQ(bench.Render(), kOk);
  const PixelF half = Out(5, 3);
  const PixelF full = Out(9, 3);
  bench.mask.Reset(32, 1, kSide, kSide);
  bench.mask.Place(AtOrigin(0, 0));
  for (std::int32_t y = 0; y < kSide; ++y) {
    for (std::int32_t x = 0; x < kSide; ++x)
      reinterpret_cast<float*>(bench.mask.Row(y))[x] = x < 4 ? 0.0f : x < 8 ? 0.5f : 1.0f;
  }
  bench.hasMask = true;
  UseAs(*bench.effect, host::EffectKind::Paint);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Out(1, 3), Checks(1, 3));
  EXPECT_EQ(Out(9, 3), full);
  EXPECT_NEAR(Out(5, 3)[0], (half[0] + Checks(5, 3)[0]) / 2.0f, 1e-4f);
}

TEST_F(FloatFrames, AMaskOfAnotherDepthIsNotRead) {
  UseAs(*bench.effect, host::EffectKind::Paint);
  bench.hasMask = true;
  for (const std::int32_t depth : {8, 16}) {
    bench.mask.Reset(depth, 1, kSide, kSide);
    bench.mask.Clear();
    EXPECT_EQ(bench.Render(), kOk);
    EXPECT_STREQ(bench.effect->WhyNotRendered().reason, "has another format than the output");
    EXPECT_EQ(Out(0, 0), (PixelF{7, 7, 7, 7}));
  }
}

TEST_F(FloatFrames, ClipsAreDissolved) {
  bench.PaintClips<PixelF>(kSide, kSide, {4.0f, -2.0f, 0.25f, 1.0f}, {8.0f, 2.0f, 0.75f, 1.0f});
  UseAs(*bench.effect, host::EffectKind::Transition);
  bench.effect->SetDuration(10.0);
  bench.Set(PropertyId::TransitionRamping, 0.0);
  EXPECT_EQ(bench.Render(5.0), kOk);
  ExpectOutput([](std::int32_t, std::int32_t) { return PixelF{6.0f, 0.0f, 0.5f, 1.0f}; });
}

TEST_F(FloatFrames, TheCropFillsAndBlanks) {
  bench.Set(PropertyId::DisplayCropped, 1.0);
  bench.Set(PropertyId::CropLeft, 50.0);
  bench.Set(PropertyId::XEdgeMethod, 0.0);
  bench.Set(PropertyId::CropColourG, 25.0);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput([](std::int32_t x, std::int32_t y) { return x < 8 ? PixelF{0.0f, 0.25f, 0.0f, 0.0f} : Checks(x, y); });
  bench.Set(PropertyId::BlankCropped, 1.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Out(2, 5), PixelF{});
  EXPECT_EQ(Out(9, 5), Checks(9, 5));
}

TEST_F(FloatFrames, TheirMemoryIsCounted) {
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(bench.effect->DescribeFrameMemory().pictures, 2 * kSide * kSide * 16);
}

}  // namespace
}  // namespace vblur
