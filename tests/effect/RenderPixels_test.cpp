// The stages of a frame.
#include <atomic>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/effect/FrameTest.h"
#include "tests/effect/OpenBlur.h"

namespace vblur {
namespace {

// Counts polls: one per pass and one per row of each stage.
class CountingContext : public IDSExecuteContext {
 public:
  std::int32_t MayContinue() override {
    ++polls;
    return 1;
  }

  std::atomic<std::int32_t> polls = 0;
};

class RenderPixels : public FrameTest {
 protected:
  std::int32_t PollsOfAFrame() {
    CountingContext counting;
    bench.contextInUse = &counting;
    EXPECT_EQ(bench.Render(), kOk);
    bench.contextInUse = &bench.context;
    return counting.polls;
  }
};

TEST_F(RenderPixels, DisplayCroppedIgnoresTheBlurAndTheMasks) {
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

TEST_F(RenderPixels, CropColourAlphaIsNeverRendered) {
  bench.Set(PropertyId::XEdgeMethod, 0.0);
  bench.Set(PropertyId::YEdgeMethod, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  const auto without = Pixels();
  bench.Set(PropertyId::CropColourA, 100.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Pixels(), without);
}

TEST_F(RenderPixels, AMaskedChannelIsTheSources) {
  bench.Set(PropertyId::MaskGreen, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  for (std::int32_t x = 0; x < kSide; ++x)
    EXPECT_EQ(At<Pixel8>(bench.output, x, 7)[1], Checks(x, 7)[1]);
  EXPECT_NE(At<Pixel8>(bench.output, 3, 7)[0], Checks(3, 7)[0]);
}

TEST_F(RenderPixels, TheAlphaMaskNeedsAChoiceThatWritesAlpha) {
  Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t x, std::int32_t) {
    return Pixel8{0, 0, 0, static_cast<std::uint8_t>(x < 8 ? 0 : 255)};
  });
  bench.Set(PropertyId::MaskAlpha, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 7, 7)[3], 0) << "RGBA writes alpha, so the mask puts it back";
  // Mix halves alpha at an effect gain of 0; with RGB the mask does not restore it.
  bench.Set(PropertyId::Channels, 0.0);
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Set(PropertyId::EffectGain, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 12, 7)[3], 127);
}

TEST_F(RenderPixels, AnAbsentInputGivesTheOutsideColour) {
  bench.hasInput = false;
  UseAs(*bench.effect, host::EffectKind::Generator);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput([](std::int32_t, std::int32_t) { return Pixel8{0, 0, 0, 0}; });
}

TEST_F(RenderPixels, BothDepthsCountAOneAsFull) {
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

TEST_F(RenderPixels, DisplayCroppedIgnoresATransition) {
  Paint<Pixel8>(bench.input2, kSide, kSide, Marker);
  bench.hasInput2 = true;
  UseAs(*bench.effect, host::EffectKind::Transition);
  bench.effect->SetDuration(10.0);
  bench.Set(PropertyId::DisplayCropped, 1.0);
  for (const double scaling : {1.0, 2.0}) {
    bench.Set(PropertyId::EffectScaling, scaling);
    EXPECT_EQ(bench.Render(10.0), kOk);
    ExpectOutput(Checks);
  }
}

TEST_F(RenderPixels, DisplayCroppedKeepsToTheRegionAndTheField) {
  bench.Set(PropertyId::DisplayCropped, 1.0);
  bench.effect->SetROI(3, 4, 5, 6);
  bench.effect->SetField(2);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput([](std::int32_t x, std::int32_t y) {
    return x >= 3 && x < 8 && y >= 4 && y < 10 && y % 2 == 1 ? Checks(x, y) : Marker(x, y);
  });
}

TEST_F(RenderPixels, DisplayCroppedIsBlankedToo) {
  bench.Set(PropertyId::DisplayCropped, 1.0);
  bench.Set(PropertyId::BlankCropped, 1.0);
  bench.Set(PropertyId::CropLeft, 25.0);
  bench.Set(PropertyId::CropRight, 75.0);
  EXPECT_EQ(bench.Render(), kOk);
  // Blanking always clears the first and the last row.
  ExpectOutput([](std::int32_t x, std::int32_t y) {
    return x >= 4 && x < 12 && y >= 1 && y < kSide - 1 ? Checks(x, y) : Pixel8{};
  });
}

TEST_F(RenderPixels, TheCropIsThatOfTheFramesTime) {
  bench.Set(PropertyId::DisplayCropped, 1.0);
  bench.Set(PropertyId::XEdgeMethod, 0.0);
  bench.Set(PropertyId::YEdgeMethod, 0.0);
  const auto rising = [](double from, double to) { return host::Curve{{{0.0, from}, {10.0, to}}, {}}; };
  bench.Animate(PropertyId::CropLeft, rising(0.0, 50.0));
  bench.Animate(PropertyId::CropRight, rising(100.0, 50.0));
  bench.Animate(PropertyId::CropBottom, rising(25.0, 75.0));
  bench.Animate(PropertyId::CropTop, rising(50.0, 100.0));
  // 20 % is 51 of 255; the others clamp to 1 and 0.
  bench.Animate(PropertyId::CropColourR, rising(0.0, 40.0));
  bench.Animate(PropertyId::CropColourG, rising(0.0, 500.0));
  bench.Animate(PropertyId::CropColourB, rising(0.0, -40.0));
  EXPECT_EQ(bench.Render(5.0), kOk);
  // The box includes both ends.
  ExpectOutput([](std::int32_t x, std::int32_t y) {
    return x >= 4 && x <= 12 && y >= 8 && y <= 12 ? Checks(x, y) : Pixel8{51, 255, 0, 0};
  });
}

TEST_F(RenderPixels, TheChannelMaskStageRunsForAMaskThatIsOff) {
  auto* const open = new OpenBlur();
  bench.effect = ComPtr<Blur>::Own(open);
  const std::int32_t without = PollsOfAFrame();
  bench.Set(PropertyId::MaskRed, 0.0);
  EXPECT_EQ(PollsOfAFrame(), without + 1 + kSide) << "one pass over all rows";
  open->effectFlags &= ~64;
  EXPECT_EQ(PollsOfAFrame(), without) << "the effect has no such stage";
  open->effectFlags |= 64;
  bench.Set(PropertyId::MaskRed, 1.0);
  bench.Set(PropertyId::MaskAlpha, 0.0);
  EXPECT_EQ(PollsOfAFrame(), without + 1 + kSide);
}

TEST_F(RenderPixels, TheAlphaMaskBuildsNothingWhereAlphaIsNotWritten) {
  // RGBA, Alpha and unlisted values write alpha.
  for (const double channels : {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0, 11.0, -1.0}) {
    bench.Set(PropertyId::Channels, channels);
    bench.Set(PropertyId::MaskAlpha, 1.0);
    const std::int32_t without = PollsOfAFrame();
    bench.Set(PropertyId::MaskAlpha, 0.0);
    const bool writesAlpha = channels == 1.0 || channels == 6.0 || channels == 11.0 || channels == -1.0;
    EXPECT_EQ(PollsOfAFrame(), writesAlpha ? without + 1 + kSide : without) << channels;
  }
}

TEST_F(RenderPixels, AGeneratorHasNoMasks) {
  Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t x, std::int32_t) {
    return x == 8 ? Pixel8{255, 255, 255, 255} : Pixel8{};
  });
  bench.Set(PropertyId::Blur, 3.0);
  bench.Set(PropertyId::Aspect, 100.0);
  bench.Set(PropertyId::MaskRed, 0.0);
  UseAs(*bench.effect, host::EffectKind::Filter);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 8, 7), (Pixel8{255, 66, 66, 66}));
  UseAs(*bench.effect, host::EffectKind::Generator);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 8, 7), (Pixel8{66, 66, 66, 66}));
}

TEST_F(RenderPixels, AnUnusableMaskPaintsNothing) {
  host::HostImage mask;
  mask.Reset(8, 1, kSide, kSide);
  std::memset(mask.FirstPixel(), 255, mask.ByteCount());
  UnusableImage unusable(mask);
  UseAs(*bench.effect, host::EffectKind::Paint);
  ASSERT_EQ(bench.Render(), kOk);
  bench.effect->SetPixelMask(&mask, 0, 0);
  ASSERT_EQ(bench.effect->RenderFrame(0.0), kOk);
  EXPECT_NE(At<Pixel8>(bench.output, 3, 7), Checks(3, 7));
  bench.effect->SetPixelMask(&unusable, 0, 0);
  ASSERT_EQ(bench.effect->RenderFrame(0.0), kOk);
  ExpectOutput(Checks);
}

TEST_F(RenderPixels, TheMaskLiesRelativeToTheInput) {
  host::HostImage mask;
  mask.Reset(8, 1, 1, 1);
  std::memset(mask.FirstPixel(), 255, 1);
  bench.Set(PropertyId::Blur, 0.0);
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Set(PropertyId::Blend, 0.0);
  bench.Set(PropertyId::EffectGain, 0.0);
  bench.input.Place(AtOrigin(-2, 7));
  bench.output.Place(AtOrigin(-2, 7));
  UseAs(*bench.effect, host::EffectKind::Paint);
  ASSERT_EQ(bench.Render(), kOk);
  bench.effect->SetPixelMask(&mask, 3, 5);
  ASSERT_EQ(bench.effect->RenderFrame(0.0), kOk);
  ExpectOutput([](std::int32_t x, std::int32_t y) { return x == 3 && y == 5 ? Pixel8{0, 0, 0, 0} : Checks(x, y); });
}
// With field rows the picture has all rows. Copies write the rows of the field only; the filter and the copies of
// single channels write all.
TEST_F(RenderPixels, AFieldOfRowsIsDisplayedInItsRows) {
  auto* const open = new OpenBlur();
  bench.effect = ComPtr<Blur>::Own(open);
  open->fieldMode = kFieldRows;
  bench.Set(PropertyId::DisplayCropped, 1.0);
  for (const std::int32_t field : {1, 2}) {
    Paint<Pixel8>(bench.output, kSide, kSide, Marker);
    bench.effect->SetField(field);
    EXPECT_EQ(bench.Render(), kOk);
    ExpectOutput([&](std::int32_t x, std::int32_t y) { return y % 2 == field - 1 ? Checks(x, y) : Marker(x, y); });
  }
}

TEST_F(RenderPixels, AFieldOfRowsIsMaskedInAllRows) {
  auto* const open = new OpenBlur();
  bench.effect = ComPtr<Blur>::Own(open);
  open->fieldMode = kFieldRows;
  Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t x, std::int32_t) {
    return x == 8 ? Pixel8{255, 255, 255, 255} : Pixel8{};
  });
  bench.Set(PropertyId::Blur, 3.0);
  bench.Set(PropertyId::Aspect, 100.0);
  bench.Set(PropertyId::MaskRed, 0.0);
  bench.effect->SetField(2);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(bench.Overscan(), (std::array{3.0, 0.0}));
  for (const std::int32_t y : {6, 7})
    EXPECT_EQ(At<Pixel8>(bench.output, 8, y), (Pixel8{255, 66, 66, 66}));
}

TEST_F(RenderPixels, NothingIsBlankedInARegionWithoutRowsOrColumns) {
  bench.Set(PropertyId::BlankCropped, 1.0);
  bench.Set(PropertyId::CropLeft, 25.0);
  bench.Set(PropertyId::CropBottom, 75.0);
  const std::int32_t regions[][4] = {{3, 4, 0, 6}, {3, 4, 5, 0}, {3, 4, 0, 0}, {13, 14, -5, -6}};
  for (const auto& [x, y, width, height] : regions) {
    bench.effect->SetROI(x, y, width, height);
    EXPECT_EQ(bench.Render(), kOk);
    ExpectOutput(Marker);
  }
}

}  // namespace
}  // namespace vblur
