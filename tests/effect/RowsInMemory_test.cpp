// Pictures whose rows lie in a host's memory with gaps, or from the top down: the same bits, and the gaps stay.
#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

constexpr std::int32_t kWidth = 37;
constexpr std::int32_t kHeight = 22;
constexpr auto kGuard = std::byte{0xA5};

// A copy of a picture with `gap` bytes behind each row.
class SpreadImage : public IDSImage, public host::IHostOrigin {
 public:
  SpreadImage(const host::HostImage& image, std::size_t gap, bool topDown)
      : image_(image), step_(image.RowBytes() + gap), topDown_(topDown) {
    memory_.assign(step_ * static_cast<std::size_t>(image.Height()), kGuard);
    for (std::int32_t y = 0; y < image.Height(); ++y)
      std::memcpy(RowOf(y), image.Row(y), image.RowBytes());
  }

  HRESULT IsUsable() const override { return image_.IsUsable(); }
  GUID Format() const override { return image_.Format(); }
  DSPixelPair Size() const override { return image_.Size(); }
  void* FirstPixel() const override { return RowOf(0); }
  DSWorldPair WorldPosition() const override { return image_.WorldPosition(); }
  DSWorldPair WorldSize() const override { return image_.WorldSize(); }
  DSPixelPair HostOrigin() const override { return image_.HostOrigin(); }
  std::int64_t RowStep() const override {
    const auto step = static_cast<std::int64_t>(step_);
    return topDown_ ? -step : step;
  }

  std::byte* RowOf(std::int32_t y) const {
    return memory_.data() + step_ * static_cast<std::size_t>(topDown_ ? image_.Height() - 1 - y : y);
  }
  bool GapsAreUntouched() const {
    for (std::int32_t y = 0; y < image_.Height(); ++y) {
      if (!std::all_of(RowOf(y) + image_.RowBytes(), RowOf(y) + step_, [](std::byte each) { return each == kGuard; }))
        return false;
    }
    return true;
  }

 private:
  const host::HostImage& image_;
  mutable std::vector<std::byte> memory_;
  std::size_t step_;
  bool topDown_;
};

struct Layout {
  std::int32_t depth;
  std::size_t gap;
  bool topDown;
};

class RowsInMemory : public testing::TestWithParam<Layout> {
 protected:
  RowsInMemory() {
    for (host::HostImage* each : {&bench.input, &bench.input2, &bench.output})
      Fill(*each, 4);
    Fill(bench.mask, 1);
    bench.hasInput2 = bench.hasMask = true;
    bench.Set(PropertyId::Blur, 7.3);
    bench.Set(PropertyId::CropLeft, 10.0);
    bench.Set(PropertyId::MaskGreen, 0.0);
    bench.Set(PropertyId::BlankCropped, 1.0);
    bench.effect->SetDuration(10.0);
  }

  void Fill(host::HostImage& image, std::int32_t components) {
    const std::int32_t depth = GetParam().depth;
    image.Reset(depth, components, kWidth, kHeight);
    image.Place({});
    for (std::size_t at = 0; at < image.ByteCount(); at += static_cast<std::size_t>(depth / 8)) {
      if (depth == 32) {
        const float value = std::uniform_real_distribution<float>(-0.5f, 3.0f)(random);
        std::memcpy(image.Row(0) + at, &value, sizeof value);
      } else {
        const auto value = static_cast<std::uint16_t>(random() % 16385);
        std::memcpy(image.Row(0) + at, &value, static_cast<std::size_t>(depth / 8));
      }
    }
  }

  // The frame from packed memory, then from the layout's: equal where it writes, and nothing else written.
  void ExpectTheSameFrame() {
    SpreadImage spreadOutput(bench.output, GetParam().gap, GetParam().topDown);
    SpreadImage input(bench.input, GetParam().gap, GetParam().topDown);
    SpreadImage input2(bench.input2, GetParam().gap, GetParam().topDown);
    SpreadImage mask(bench.mask, GetParam().gap, GetParam().topDown);
    ASSERT_EQ(bench.Render(5.0), kOk);
    bench.effect->SetOutput(&spreadOutput);
    bench.effect->SetInput(&input);
    bench.effect->SetInput2(&input2);
    bench.effect->SetPixelMask(&mask, 0, 0);
    ASSERT_EQ(bench.effect->RenderFrame(5.0), kOk);
    for (std::int32_t y = 0; y < kHeight; ++y)
      ASSERT_EQ(std::memcmp(spreadOutput.RowOf(y), bench.output.Row(y), bench.output.RowBytes()), 0) << "row " << y;
    EXPECT_TRUE(spreadOutput.GapsAreUntouched());
  }

  std::minstd_rand random{7};
  EffectBench bench{kWidth, kHeight};
};

TEST_P(RowsInMemory, ShowTheSamePictureForEachUse) {
  for (const host::EffectKind kind :
       {host::EffectKind::Filter, host::EffectKind::Generator, host::EffectKind::Paint, host::EffectKind::Transition}) {
    SCOPED_TRACE(static_cast<int>(kind));
    UseAs(*bench.effect, kind);
    ExpectTheSameFrame();
  }
}

TEST_P(RowsInMemory, ShowTheSamePictureForEachChannelChoice) {
  for (double channels = 0.0; channels <= 10.0; ++channels) {
    SCOPED_TRACE(channels);
    bench.Set(PropertyId::Channels, channels);
    bench.Set(PropertyId::MixBack, channels + 1.0);
    ExpectTheSameFrame();
  }
}

TEST_P(RowsInMemory, ShowTheSameFields) {
  for (const std::int32_t field : {1, 2}) {
    SCOPED_TRACE(field);
    bench.effect->SetField(field);
    ExpectTheSameFrame();
  }
}

TEST_P(RowsInMemory, ShowTheSameCroppedPicture) {
  bench.Set(PropertyId::DisplayCropped, 1.0);
  ExpectTheSameFrame();
}

INSTANTIATE_TEST_SUITE_P(Layouts, RowsInMemory,
                         testing::Values(Layout{8, 0, true}, Layout{8, 5, false}, Layout{8, 64, true},
                                         Layout{16, 0, true}, Layout{16, 6, false}, Layout{16, 10, true},
                                         Layout{32, 0, true}, Layout{32, 4, false}, Layout{32, 20, true}));

}  // namespace
}  // namespace vblur
