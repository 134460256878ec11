#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "platform/IVBlurFacts.h"
#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

constexpr std::int32_t kSide = 16;

Pixel8 Checks(std::int32_t x, std::int32_t y) {
  const auto value = static_cast<std::uint8_t>((x / 3 + y / 2) % 2 * 200 + x);
  return {value, static_cast<std::uint8_t>(255 - value), static_cast<std::uint8_t>(y * 9), 128};
}

Pixel8 Marker(std::int32_t, std::int32_t) {
  return {1, 2, 3, 4};
}

// Input and output of one size, the output marked.
class RenderFrame : public testing::Test {
 protected:
  void SetUp() override {
    Paint<Pixel8>(bench.input, kSide, kSide, Checks);
    Paint<Pixel8>(bench.output, kSide, kSide, Marker);
  }

  void ExpectOutput(const std::function<Pixel8(std::int32_t, std::int32_t)>& colour) {
    for (std::int32_t y = 0; y < kSide; ++y) {
      for (std::int32_t x = 0; x < kSide; ++x) {
        ASSERT_EQ(At<Pixel8>(bench.output, x, y), colour(x, y)) << "x " << x << ", y " << y;
      }
    }
  }
  std::vector<Pixel8> Pixels() const {
    const auto* first = reinterpret_cast<const Pixel8*>(bench.output.Row(0));
    return {first, first + kSide * kSide};
  }

  EffectBench bench{kSide, kSide};
};

// The picture between the passes is as large as the output: what the y boxes read beyond it is rows of it again. Lines
// and tables are small.
TEST(RenderFrameMemory, IsOnePictureBesideThoseThatAreGiven) {
  constexpr std::int64_t kWidth = 2048;
  constexpr std::int64_t kHeight = 1024;
  constexpr std::int64_t kTables = std::int64_t{4} << 20;
  EffectBench bench{kWidth, kHeight};
  Paint<Pixel8>(bench.input, kWidth, kHeight, Checks);
  Paint<Pixel8>(bench.output, kWidth, kHeight, Marker);
  bench.Set(PropertyId::Blur, 30.0);
  EXPECT_EQ(bench.effect->DescribeFrameMemory().own, 0);
  ASSERT_EQ(bench.Render(), kOk);
  const FrameMemoryFacts memory = bench.effect->DescribeFrameMemory();
  EXPECT_EQ(memory.pictures, 2 * 4 * kWidth * kHeight);
  const std::int64_t between = 4 * kWidth * kHeight;
  EXPECT_GE(memory.own, between);
  EXPECT_LE(memory.own, between + kTables);

  bench.Set(PropertyId::Blur, 0.0);
  ASSERT_EQ(bench.Render(), kOk);
  EXPECT_EQ(bench.effect->DescribeFrameMemory().own, 0) << "a copy needs no picture between";
}

TEST_F(RenderFrame, WithoutAnOutputIsRefused) {
  bench.hasOutput = false;
  EXPECT_EQ(bench.Render(), kNullPointer);
}

TEST_F(RenderFrame, AnUnusableOutputGivesItsOwnResult) {
  host::HostImage empty;  // without memory
  bench.effect->SetOutput(&empty);
  EXPECT_EQ(bench.effect->RenderFrame(0.0), kFailed);
}

TEST_F(RenderFrame, AnUnknownFormatLeavesTheOutputAndSucceeds) {
  bench.output.Reset(8, 1, kSide, kSide);
  std::memset(bench.output.FirstPixel(), 77, bench.output.byteCount());
  EXPECT_EQ(bench.Render(), kOk);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(bench.output.Row(0));
  for (std::size_t i = 0; i < bench.output.byteCount(); ++i)
    ASSERT_EQ(bytes[i], 77);
}

TEST_F(RenderFrame, ABlurOfZeroCopies) {
  bench.Set(PropertyId::Blur, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

TEST_F(RenderFrame, ANegativeBlurIsZero) {
  bench.Set(PropertyId::Blur, -5.0);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

TEST_F(RenderFrame, AspectOfOneHundredLeavesRowsUnmixed) {
  // Columns of one colour stay columns of one colour only when nothing blurs across rows.
  Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t, std::int32_t y) {
    return Pixel8{static_cast<std::uint8_t>(y * 16), 0, 0, 255};
  });
  bench.Set(PropertyId::Aspect, 100.0);
  EXPECT_EQ(bench.Render(), kOk);
  for (std::int32_t y = 1; y < kSide; ++y)
    EXPECT_GT(At<Pixel8>(bench.output, 5, y)[0], At<Pixel8>(bench.output, 5, y - 1)[0] + 8);
  bench.Set(PropertyId::Aspect, -250.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_LT(At<Pixel8>(bench.output, 5, 1)[0] - At<Pixel8>(bench.output, 5, 0)[0], 8);
}

TEST_F(RenderFrame, TheSecondFieldStartsOneRowIn) {
  bench.Set(PropertyId::Blur, 0.0);
  bench.effect->SetField(2);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput([](std::int32_t x, std::int32_t y) { return y % 2 == 1 ? Checks(x, y) : Marker(x, y); });
  bench.effect->SetField(1);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

TEST_F(RenderFrame, AFieldHasHalfTheVerticalSize) {
  // An impulse in the first field reaches half as many of its rows as of a frame's.
  Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t, std::int32_t y) {
    return y == 8 ? Pixel8{255, 255, 255, 255} : Pixel8{};
  });
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::YEdgeMethod, 0.0);
  bench.effect->SetField(1);
  EXPECT_EQ(bench.Render(), kOk);
  // Boxes of radius 1 on the field's rows: weights 1 3 6 7 6 3 1 of 27.
  EXPECT_EQ(At<Pixel8>(bench.output, 8, 8)[0], 66);
  EXPECT_EQ(At<Pixel8>(bench.output, 8, 8 + 2 * 3)[0], 9);
  EXPECT_EQ(At<Pixel8>(bench.output, 8, 8 - 2 * 4)[0], 0);
}

TEST_F(RenderFrame, DisplayCroppedIgnoresTheBlurAndTheMasks) {
  bench.Set(PropertyId::DisplayCropped, 1.0);
  bench.Set(PropertyId::CropLeft, 50.0);
  bench.Set(PropertyId::XEdgeMethod, 0.0);
  bench.Set(PropertyId::CropColourG, 100.0);
  bench.Set(PropertyId::CropColourA, 100.0);
  bench.Set(PropertyId::MaskRed, 0.0);
  for (const double blur : {0.0, 40.0}) {
    bench.Set(PropertyId::Blur, blur);
    EXPECT_EQ(bench.Render(), kOk);
    ExpectOutput([](std::int32_t x, std::int32_t y) { return x < 8 ? Pixel8{0, 255, 0, 0} : Checks(x, y); });
  }
}

TEST_F(RenderFrame, CropColourAlphaIsNeverRendered) {
  bench.Set(PropertyId::XEdgeMethod, 0.0);
  bench.Set(PropertyId::YEdgeMethod, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  const auto without = Pixels();
  bench.Set(PropertyId::CropColourA, 100.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Pixels(), without);
}

TEST_F(RenderFrame, AMaskedChannelIsTheSources) {
  bench.Set(PropertyId::MaskGreen, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  for (std::int32_t x = 0; x < kSide; ++x)
    EXPECT_EQ(At<Pixel8>(bench.output, x, 7)[1], Checks(x, 7)[1]);
  EXPECT_NE(At<Pixel8>(bench.output, 3, 7)[0], Checks(3, 7)[0]);
}

TEST_F(RenderFrame, TheAlphaMaskNeedsAChoiceThatWritesAlpha) {
  Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t x, std::int32_t) {
    return Pixel8{0, 0, 0, static_cast<std::uint8_t>(x < 8 ? 0 : 255)};
  });
  bench.Set(PropertyId::MaskAlpha, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 7, 7)[3], 0) << "RGBA writes alpha, so the mask puts it back";
  // With RGB and Mix, alpha is the mix of two equal alphas at half gain: no mask brings it back.
  bench.Set(PropertyId::Channels, 0.0);
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Set(PropertyId::EffectGain, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 12, 7)[3], 127);
}

TEST_F(RenderFrame, AnAbsentInputGivesTheOutsideColour) {
  bench.hasInput = false;
  UseAs(*bench.effect, host::EffectKind::Generator);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput([](std::int32_t, std::int32_t) { return Pixel8{0, 0, 0, 0}; });
}

TEST_F(RenderFrame, ARegionIsAllThatIsWritten) {
  bench.Set(PropertyId::Blur, 0.0);
  bench.effect->SetROI(3, 4, 5, 6);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(
      [](std::int32_t x, std::int32_t y) { return x >= 3 && x < 8 && y >= 4 && y < 10 ? Checks(x, y) : Marker(x, y); });
}

TEST_F(RenderFrame, AStopBeforeTheFirstRowWritesNothing) {
  bench.context.Stop();
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Marker);
}

TEST_F(RenderFrame, TheNextRenderIsArmedAgain) {
  bench.Set(PropertyId::Blur, 0.0);
  host::ExecuteContext stopped;
  stopped.Stop();
  bench.contextInUse = &stopped;
  bench.Render();
  ExpectOutput(Marker);
  bench.contextInUse = &bench.context;
  bench.Render();
  ExpectOutput(Checks);
}

TEST_F(RenderFrame, TellsThatItRanOutOfMemory) {
  // Rows for the reach of 90000 pixels, above and below one of 30000: more than there are addresses for.
  const auto black = [](std::int32_t, std::int32_t) { return Pixel16{}; };
  Paint<Pixel16>(bench.input, 30000, 1, black);
  Paint<Pixel16>(bench.output, 30000, 1, [](std::int32_t, std::int32_t) { return Pixel16{1, 2, 3, 4}; });
  const auto facts = bench.effect.As<IVBlurFacts>();
  bench.Set(PropertyId::Blur, 3.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_FALSE(facts->RanOutOfMemory());
  EXPECT_EQ(At<Pixel16>(bench.output, 7, 0), (Pixel16{0, 0, 0, 0}));

  Paint<Pixel16>(bench.output, 30000, 1, [](std::int32_t, std::int32_t) { return Pixel16{1, 2, 3, 4}; });
  bench.Set(PropertyId::Blur, 270000.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_TRUE(facts->RanOutOfMemory());
  EXPECT_EQ(At<Pixel16>(bench.output, 7, 0), (Pixel16{1, 2, 3, 4}));
}

TEST_F(RenderFrame, BothDepthsCountAOneAsFull) {
  Paint<Pixel16>(bench.input, kSide, kSide, [](std::int32_t, std::int32_t) { return Pixel16{16384, 0, -100, 16384}; });
  Paint<Pixel16>(bench.output, kSide, kSide, [](std::int32_t, std::int32_t) { return Pixel16{}; });
  bench.Set(PropertyId::DisplayCropped, 1.0);
  bench.Set(PropertyId::CropRight, 40.0);
  bench.Set(PropertyId::XEdgeMethod, 0.0);
  bench.Set(PropertyId::CropColourR, 100.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel16>(bench.output, 2, 2), (Pixel16{16384, 0, -100, 16384}));
  EXPECT_EQ(At<Pixel16>(bench.output, 12, 2), (Pixel16{16384, 0, 0, 0}));
}

}  // namespace
}  // namespace vblur
