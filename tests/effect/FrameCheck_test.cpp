// What the effect says of frames that it did not render.
#include <limits>

#include <gtest/gtest.h>

#include "platform/IVBlurFacts.h"
#include "platform/OwnFormats.h"
#include "tests/effect/FrameTest.h"

namespace vblur {
namespace {

// A picture that tells what it is told to.
class ClaimedImage : public IDSImage, public host::IHostOrigin {
 public:
  explicit ClaimedImage(const host::HostImage& image)
      : format(image.Format()), size(image.Size()), memory(image.FirstPixel()) {}

  HRESULT IsUsable() const override { return usable; }
  GUID Format() const override { return format; }
  DSPixelPair Size() const override { return size; }
  void* FirstPixel() const override { return memory; }
  DSWorldPair WorldPosition() const override { return {}; }
  DSWorldPair WorldSize() const override { return {16.0, 16.0}; }
  DSPixelPair HostOrigin() const override { return origin; }
  std::int64_t RowStep() const override { return rowStep; }

  HRESULT usable = kOk;
  GUID format;
  DSPixelPair size;
  void* memory;
  DSPixelPair origin;
  std::int64_t rowStep = 0;
};

class FrameCheck : public FrameTest {
 protected:
  FrameCheck() { bench.Set(PropertyId::Blur, 6.0); }

  std::string Why() const {
    const FrameRefusal refusal = bench.effect.As<IVBlurFacts>()->WhyNotRendered();
    if (refusal.reason == nullptr) return "";
    return (refusal.picture == nullptr ? "" : refusal.picture + std::string(" ")) + refusal.reason;
  }

  // A frame that is rendered, then a fresh output for the one with the claim.
  template <typename Claim>
  void RenderBefore(ClaimedImage& claimed, Claim claim) {
    EXPECT_EQ(bench.Render(), kOk);
    EXPECT_EQ(Why(), "");
    Paint<Pixel8>(bench.output, kSide, kSide, Marker);
    claim(claimed);
  }

  // Renders with an input or an output that claims something, and says why not.
  template <typename Claim>
  std::string WithInput(Claim claim) {
    ClaimedImage claimed(bench.input);
    RenderBefore(claimed, claim);
    bench.effect->SetInput(&claimed);
    EXPECT_EQ(bench.effect->RenderFrame(0.0), kOk);
    bench.effect->SetInput(nullptr);
    return Why();
  }
  template <typename Claim>
  std::string WithOutput(Claim claim) {
    ClaimedImage claimed(bench.output);
    RenderBefore(claimed, claim);
    bench.effect->SetOutput(&claimed);
    EXPECT_EQ(bench.effect->RenderFrame(0.0), kOk);
    bench.effect->SetOutput(nullptr);
    ExpectOutput(Marker);
    return Why();
  }
};

constexpr GUID kUnknown = MakeGuid("{9D2E3005-AE89-11D5-9414-0800690F2FFF}");

TEST_F(FrameCheck, AnOutputThatCannotBeWrittenIsTold) {
  EXPECT_EQ(WithOutput([](ClaimedImage& image) { image.format = kUnknown; }), "output has an unknown format");
  EXPECT_EQ(WithOutput([](ClaimedImage& image) { image.format = MFIF_MASK_8; }), "output has an unknown format");
  EXPECT_EQ(WithOutput([](ClaimedImage& image) { image.memory = nullptr; }), "output has no memory");
  EXPECT_EQ(WithOutput([](ClaimedImage& image) { image.size = {0, 16}; }), "output has no pixels");
  EXPECT_EQ(WithOutput([](ClaimedImage& image) { image.size = {16, -5}; }), "output has no pixels");
  EXPECT_EQ(WithOutput([](ClaimedImage& image) {
              image.size = {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::min()};
            }),
            "output has no pixels");
}

TEST_F(FrameCheck, AnInputThatShowsNothingIsTold) {
  EXPECT_EQ(WithInput([](ClaimedImage& image) { image.usable = kFailed; }), "input cannot be used");
  EXPECT_EQ(WithInput([](ClaimedImage& image) { image.memory = nullptr; }), "input has no memory");
  EXPECT_EQ(WithInput([](ClaimedImage& image) { image.size = {0, 0}; }), "input has no pixels");
  EXPECT_EQ(WithInput([](ClaimedImage& image) { image.size = {-5, 16}; }), "input has no pixels");
  EXPECT_EQ(WithInput([](ClaimedImage& image) { image.format = kUnknown; }), "input has an unknown format");
  bench.hasInput = false;
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "") << "the host has not said what the effect is used as";
  UseAs(*bench.effect, host::EffectKind::Filter);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "input is missing");
}

// Its memory would be read as that of the output's format.
TEST_F(FrameCheck, AnInputOfAnotherFormatIsNotRead) {
  for (const GUID& format : {MFIF_RGBA_S2_14, kFormatRgbaFloat, MFIF_MASK_8, MFIF_MASK_16, kFormatMaskFloat}) {
    EXPECT_EQ(WithInput([&](ClaimedImage& image) { image.format = format; }),
              "input has another format than the output");
    ExpectOutput(Marker);
  }
}

TEST_F(FrameCheck, PicturesBeyondThePixelsThatCountAreNotRendered) {
  constexpr std::int32_t kLast = FrameLimits::kFarthestPixel;
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  for (const DSPixelPair origin :
       {DSPixelPair{kLast - kSide + 1, 0}, {0, -kLast - 1}, {kMost, kMost}, {kLeast, 0}, {0, 2147483600}}) {
    const auto place = [&](ClaimedImage& image) { image.origin = origin; };
    EXPECT_EQ(WithInput(place), "input lies beyond the pixels that count");
    ExpectOutput(Marker);
    EXPECT_EQ(WithOutput(place), "output lies beyond the pixels that count");
  }
  for (const DSPixelPair size : {DSPixelPair{FrameLimits::kLongestSide + 1, 1}, {1, kMost}}) {
    EXPECT_EQ(WithInput([&](ClaimedImage& image) { image.size = size; }), "input lies beyond the pixels that count");
    ExpectOutput(Marker);
  }
}

TEST_F(FrameCheck, RowsThatOverlapAreNotRead) {
  constexpr std::int64_t kRow = 4 * kSide;
  for (const std::int64_t step : {kRow - 1, 1 - kRow, std::int64_t{4}, std::int64_t{-4}}) {
    const auto claim = [&](ClaimedImage& image) { image.rowStep = step; };
    EXPECT_EQ(WithInput(claim), "input has rows that overlap or divide a component");
    ExpectOutput(Marker);
    EXPECT_EQ(WithOutput(claim), "output has rows that overlap or divide a component");
  }
  EXPECT_EQ(WithInput([](ClaimedImage& image) { image.rowStep = kRow; }), "");
  EXPECT_EQ(WithInput([](ClaimedImage& image) {
              image.size = {0, 16};
              image.rowStep = std::numeric_limits<std::int64_t>::min();
            }),
            "input has no pixels");
}

// The farthest places of all, with the largest blur.
TEST_F(FrameCheck, PicturesAtTheFarthestPixelsAreRendered) {
  constexpr std::int32_t kLast = FrameLimits::kFarthestPixel;
  for (const std::int32_t input : {-kLast, 0, kLast - kSide}) {
    for (const std::int32_t output : {-kLast, 0, kLast - kSide}) {
      for (const double edge : {0.0, 1.0, 2.0, 3.0}) {
        bench.Set(PropertyId::XEdgeMethod, edge);
        bench.Set(PropertyId::YEdgeMethod, edge);
        bench.Set(PropertyId::Blur, 100000.0);
        bench.input.Place(AtOrigin(input, input));
        bench.output.Place(AtOrigin(output, output));
        EXPECT_EQ(bench.Render(), kOk);
        EXPECT_EQ(Why(), "");
      }
    }
  }
}

TEST_F(FrameCheck, TheSecondClipAndTheMaskCountWhereTheyAreNeeded) {
  Paint<Pixel8>(bench.input2, kSide, kSide, Checks);
  bench.mask.Reset(8, 1, kSide, kSide);
  bench.mask.Clear();
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "");
  UseAs(*bench.effect, host::EffectKind::Transition);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "second input is missing");
  bench.hasInput2 = true;
  bench.effect->SetDuration(10.0);
  EXPECT_EQ(bench.Render(5.0), kOk);
  EXPECT_EQ(Why(), "");
  UseAs(*bench.effect, host::EffectKind::Paint);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "mask is missing");
  bench.hasMask = true;
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "");
  bench.effect->SetInput(&bench.input);
  bench.effect->SetPixelMask(&bench.mask, std::numeric_limits<std::int32_t>::max(), 0);
  EXPECT_EQ(bench.effect->RenderFrame(0.0), kOk);
  EXPECT_EQ(Why(), "mask lies beyond the pixels that count");
  UseAs(*bench.effect, host::EffectKind::Generator);
  bench.hasInput = bench.hasInput2 = bench.hasMask = false;
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "") << "a generator needs no picture";
}

TEST_F(FrameCheck, ABlurWithoutASizeIsTold) {
  bench.proxy = {0.0, 1.0};
  bench.project = host::ProjectSizes{{0.0, 16.0}, {16.0, 16.0}};
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "its blur has no size that can be rendered");
  bench.proxy = {1.0, 1.0};
  bench.project = host::ProjectSizes{{16.0, 16.0}, {16.0, 16.0}};
  bench.context.Stop();
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Why(), "") << "a stop by the host is no refusal";
}

}  // namespace
}  // namespace vblur
