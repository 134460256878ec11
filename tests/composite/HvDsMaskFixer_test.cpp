// Restoring channels of the source in a finished picture.
#include "composite/HvDsMaskFixer.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/composite/Pictures.h"

namespace vblur::test {
namespace {

template <class Pixel>
using Fixer = HvDsMaskFixer<Pixel, Rf, Pixel::kMax>;

template <class Pixel>
class HvDsMaskFixerAtBothDepths : public testing::Test {};

TYPED_TEST_SUITE(HvDsMaskFixerAtBothDepths, Depths, TypeNames);

TYPED_TEST(HvDsMaskFixerAtBothDepths, RestoresOnlyTheNamedChannelsInTheWindow) {
  using Pixel = TypeParam;
  Random random(2);
  for (std::int32_t channels = 0; channels < 16; ++channels) {
    HvTexture<Pixel, Rf> source(6, 5);
    HvTexture<Pixel, Rf> output(6, 5);
    FillRandom(source, random);
    FillRandom(output, random);
    const std::vector<Pixel> before = PixelsOf(output);
    Fixer<Pixel> fixer;
    fixer.channels = channels;
    fixer.setWindow(1, 2, 4, 3);
    fixer.process(&source, &output);
    for (std::int32_t y = 0; y < 5; ++y) {
      for (std::int32_t x = 0; x < 6; ++x) {
        Pixel expected = before[static_cast<std::size_t>(y * 6 + x)];
        if (x >= 1 && x <= 4 && y >= 2 && y <= 3) {
          for (int c = 0; c < 4; ++c) {
            if ((channels >> c & 1) != 0) expected[c] = (*source.at(x, y))[c];
          }
        }
        ASSERT_EQ(*output.at(x, y), expected) << channels << " at " << x << ", " << y;
      }
    }
  }
}

// What is restored is the box at the start of the run: the whole picture if the caller has reset the crop.
TYPED_TEST(HvDsMaskFixerAtBothDepths, LeavesTheSourceAsItWasWhenTheRunBegan) {
  using Pixel = TypeParam;
  HvTexture<Pixel, Rf> source(8, 6);
  HvTexture<Pixel, Rf> output(8, 6);
  source.setBounds(2, 3, 1, 4);
  source.setEdgeMethods(kEdgeReflect, kEdgeWrap);
  source.wholeBounds();
  Fixer<Pixel> fixer;
  fixer.channels = 1;
  fixer.process(&source, &output);
  EXPECT_EQ(source.horizontal.lo, 0);
  EXPECT_EQ(source.horizontal.hi, 7);
  EXPECT_EQ(source.vertical.count, 6);
  EXPECT_EQ(source.horizontal.edgeMethod, kEdgeReflect);
  EXPECT_EQ(source.vertical.edgeMethod, kEdgeWrap);
}

TYPED_TEST(HvDsMaskFixerAtBothDepths, PutsBoxAndEdgeMethodsBack) {
  using Pixel = TypeParam;
  struct Meddler : Fixer<Pixel> {
    void processRows(HvTexture<Pixel, Rf>* in, HvTexture<Pixel, Rf>*) override {
      if (HvThreadIndex() != 0) return;
      in->setBounds(0, 0, 0, 0);
      in->setEdgeMethods(kEdgeRepeat, kEdgeRepeat);
    }
  };
  HvTexture<Pixel, Rf> source(8, 6);
  HvTexture<Pixel, Rf> output(8, 6);
  source.setBounds(2, 3, 1, 4);
  source.setEdgeMethods(kEdgeReflect, kEdgeWrap);
  Meddler meddler;
  meddler.process(&source, &output);
  EXPECT_EQ(source.horizontal.lo, 2);
  EXPECT_EQ(source.horizontal.hi, 3);
  EXPECT_EQ(source.vertical.lo, 1);
  EXPECT_EQ(source.vertical.hi, 4);
  EXPECT_EQ(source.horizontal.edgeMethod, kEdgeReflect);
  EXPECT_EQ(source.vertical.edgeMethod, kEdgeWrap);
}

TEST(HvDsMaskFixerByAlpha, MixesTheOtherColoursByTheSourcesAlpha) {
  HvTexture<R8, Rf> source(2, 1);
  HvTexture<R8, Rf> output(2, 1);
  Fill(output, Make<R8>(200, 200, 20, 7));
  *source.at(0, 0) = Make<R8>(100, 100, 100, 128);
  source.setBounds(0, 0, 0, 0);
  source.setOutsideColour(Make<R8>(40, 50, 60, 255));
  Fixer<R8> fixer;
  fixer.mixByAlpha = 1;
  fixer.channels = 1;
  fixer.process(&source, &output);
  EXPECT_EQ(*output.at(0, 0), Make<R8>(100, 150, 60, 128));
  EXPECT_EQ(*output.at(1, 0), Make<R8>(40, 200, 20, 255));
}

TEST(HvDsMaskFixerByAlpha, AllColoursCopyWholePixelsAndAlphaAmongThemWritesNothing) {
  HvTexture<R16, Rf> source(1, 1);
  *source.at(0, 0) = Make<R16>(1, 2, 3, 4);
  for (std::int32_t channels = 7; channels < 16; ++channels) {
    HvTexture<R16, Rf> output(1, 1);
    Fixer<R16> fixer;
    fixer.mixByAlpha = 1;
    fixer.channels = channels;
    fixer.process(&source, &output);
    EXPECT_EQ(*output.at(0, 0), channels == 7 ? Make<R16>(1, 2, 3, 4) : R16{}) << channels;
  }
}

// As they are, beyond 0..1 too.
TEST(HvDsMaskFixerInFloats, RestoresTheNamedChannels) {
  HvTexture<Rf, Rf> source(3, 2);
  HvTexture<Rf, Rf> output(3, 2);
  const Rf restored = MakeFloat(-2.0f, 1e-40f, 300.0f, 0.1f);
  const Rf finished = MakeFloat(0.5f, 7.0f, -1.0f, 2.0f);
  Fill(source, restored);
  for (std::int32_t channels = 0; channels < 16; ++channels) {
    Fill(output, finished);
    Fixer<Rf> fixer;
    fixer.channels = channels;
    fixer.setWindow(1, 0, 2, 0);
    fixer.process(&source, &output);
    Rf expected = finished;
    for (int c = 0; c < 4; ++c) {
      if ((channels >> c & 1) != 0) expected[c] = restored[c];
    }
    EXPECT_EQ(PixelsOf(output), (std::vector<Rf>{finished, expected, expected, finished, finished, finished}))
        << channels;
  }
}

// The alpha is an amount: beyond 0..1 it counts as 0 or 1.
TEST(HvDsMaskFixerInFloats, MixesByTheSourcesAlpha) {
  const auto fixed = [](float alpha) {
    HvTexture<Rf, Rf> source(1, 1);
    HvTexture<Rf, Rf> output(1, 1);
    *source.at(0, 0) = MakeFloat(1.0f, 2.0f, -1.0f, alpha);
    *output.at(0, 0) = MakeFloat(5.0f, 4.0f, 3.0f, 0.5f);
    Fixer<Rf> fixer;
    fixer.mixByAlpha = 1;
    fixer.channels = 1;
    fixer.process(&source, &output);
    return *output.at(0, 0);
  };
  EXPECT_EQ(fixed(0.25f), MakeFloat(1.0f, 2.5f, 0.0f, 0.25f));
  EXPECT_EQ(fixed(0.0f), MakeFloat(1.0f, 2.0f, -1.0f, 0.0f));
  EXPECT_EQ(fixed(-2.0f), MakeFloat(1.0f, 2.0f, -1.0f, -2.0f));
  EXPECT_EQ(fixed(3.0f), MakeFloat(1.0f, 4.0f, 3.0f, 3.0f));
}

}  // namespace
}  // namespace vblur::test
