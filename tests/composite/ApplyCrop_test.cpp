// The box, edge methods and outside colour that a crop gives to a texture.
#include "composite/ApplyCrop.h"

#include <algorithm>
#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "blur/FuzzSampler.h"
#include "image/SimpleCopySampler.h"
#include "tests/composite/CropOf.h"
#include "tests/composite/Pictures.h"

namespace vblur::test {
namespace {

TEST(ApplyCrop, TheWholePictureIsTheDefault) {
  HvTexture<R8, Rf> texture(100, 50);
  ApplyCropToTexture(texture, cropOf(0.0f, 1.0f, 0.0f, 1.0f));
  EXPECT_EQ(texture.horizontal.lo, 0);
  EXPECT_EQ(texture.horizontal.hi, 99);
  EXPECT_EQ(texture.vertical.lo, 0);
  EXPECT_EQ(texture.vertical.hi, 49);
  EXPECT_EQ(texture.horizontal.edgeMethod, kEdgeReflect);
  EXPECT_EQ(texture.vertical.edgeMethod, kEdgeReflect);
}

TEST(ApplyCrop, RightAndTopEndsBelongToTheBox) {
  HvTexture<R8, Rf> texture(100, 40);
  ApplyCropToTexture(texture, cropOf(0.0f, 0.5f, 0.25f, 0.5f));
  EXPECT_EQ(texture.horizontal.hi, 50);
  EXPECT_EQ(texture.horizontal.count, 51);
  EXPECT_EQ(texture.vertical.lo, 10);
  EXPECT_EQ(texture.vertical.hi, 20);
}

TEST(ApplyCrop, SwappedEndsGiveTheSameBox) {
  HvTexture<R8, Rf> one(100, 100);
  HvTexture<R8, Rf> other(100, 100);
  ApplyCropToTexture(one, cropOf(0.6f, 0.4f, 0.8f, 0.1f));
  ApplyCropToTexture(other, cropOf(0.4f, 0.6f, 0.1f, 0.8f));
  EXPECT_EQ(one.horizontal.lo, other.horizontal.lo);
  EXPECT_EQ(one.horizontal.hi, other.horizontal.hi);
  EXPECT_EQ(one.vertical.lo, other.vertical.lo);
  EXPECT_EQ(one.vertical.hi, other.vertical.hi);
}

TEST(ApplyCrop, EqualEndsLeaveOneColumnThatRepeatSmears) {
  HvTexture<R8, Rf> texture(4, 1);
  for (std::int32_t x = 0; x < 4; ++x)
    *texture.at(x, 0) = Make<R8>(x, x, x, x);
  CropSettings crop = cropOf(0.5f, 0.5f, 0.0f, 1.0f);
  crop.xEdgeMethod = kEdgeRepeat;
  ApplyCropToTexture(texture, crop);
  EXPECT_EQ(texture.horizontal.count, 1);
  HvTexture<R8, Rf> out(4, 1);
  SimpleCopySampler<R8, Rf> copier;
  copier.process(&texture, &out);
  for (const R8& pixel : PixelsOf(out))
    EXPECT_EQ(pixel, Make<R8>(2, 2, 2, 2));
}

TEST(ApplyCrop, FractionsBeyondThePictureAreItsLastPixel) {
  HvTexture<R8, Rf> texture(10, 10);
  ApplyCropToTexture(texture, cropOf(-3.0f, 1e20f, 1.5f, 2.0f));
  // A product that does not fit 32 bits becomes -2147483648, which is clamped to the first column.
  EXPECT_EQ(texture.horizontal.lo, 0);
  EXPECT_EQ(texture.horizontal.hi, 0);
  EXPECT_EQ(texture.vertical.lo, 9);
  EXPECT_EQ(texture.vertical.hi, 9);
}

TEST(ApplyCrop, ColourIsInTheScaleOfThePixel) {
  CropSettings crop = cropOf(0.0f, 1.0f, 0.0f, 1.0f);
  crop.colour = MakeFloat(1.0f, 0.5f, 0.0f, 0.0f);
  HvTexture<R8, Rf> narrow(2, 2);
  ApplyCropToTexture(narrow, crop);
  EXPECT_EQ(narrow.outsideColour, Make<R8>(255, 127, 0, 0));
  HvTexture<R16, Rf> wide(2, 2);
  ApplyCropToTexture(wide, crop);
  EXPECT_EQ(wide.outsideColour, Make<R16>(16384, 8192, 0, 0));
  crop.colour = MakeFloat(0.3f, 1.5f, -0.25f, 0.0f);
  HvTexture<Rf, Rf> floats(2, 2);
  ApplyCropToTexture(floats, crop);
  EXPECT_EQ(floats.outsideColour, crop.colour);
  EXPECT_EQ(*floats.readRun(0, 0).first, Rf{});
}

TEST(ApplyCrop, ModesChangeNothingOrTheBoxOnly) {
  CropSettings crop = cropOf(0.25f, 0.5f, 0.25f, 0.5f);
  crop.colour = MakeFloat(1.0f, 1.0f, 1.0f, 0.0f);
  HvTexture<R8, Rf> texture(8, 8);
  crop.mode = kCropNone;
  ApplyCropToTexture(texture, crop);
  EXPECT_EQ(texture.horizontal.count, 8);
  crop.mode = kCropBox;
  ApplyCropToTexture(texture, crop);
  EXPECT_EQ(texture.horizontal.count, 3);
  EXPECT_EQ(texture.horizontal.edgeMethod, kEdgeColour);
  EXPECT_EQ(texture.outsideColour, R8{});
}

TEST(ApplyCrop, AnEmptyTextureHasTheCropsEdgesAndNoPixels) {
  CropSettings crop = cropOf(0.0f, 1.0f, 0.0f, 1.0f);
  crop.colour = MakeFloat(1.0f, 0.0f, 0.0f, 0.0f);
  HvTexture<R8, Rf> texture;
  ApplyCropToTexture(texture, crop);
  EXPECT_EQ(texture.horizontal.edgeMethod, kEdgeReflect);
  EXPECT_EQ(*texture.readRun(0, 0).first, Make<R8>(255, 0, 0, 0));
}

TEST(ApplyCrop, ACopyShowsTheCropColourBeyondTheBox) {
  HvTexture<R8, Rf> texture(4, 2);
  Fill(texture, Make<R8>(9, 9, 9, 9));
  CropSettings crop = cropOf(0.25f, 0.5f, 0.0f, 1.0f);
  crop.xEdgeMethod = kEdgeColour;
  crop.colour = MakeFloat(1.0f, 0.0f, 0.0f, 0.0f);
  ApplyCropToTexture(texture, crop);
  HvTexture<R8, Rf> out(4, 2);
  SimpleCopySampler<R8, Rf> copier;
  copier.process(&texture, &out);
  const R8 red = Make<R8>(255, 0, 0, 0);
  const R8 picture = Make<R8>(9, 9, 9, 9);
  EXPECT_EQ(PixelsOf(out), (std::vector<R8>{red, picture, picture, red, red, picture, picture, red}));
}

// Columns 8 to 15 of 24, blurred along x with boxes of three pixels: a box gives (sum x 5461 + 8192) >> 14, and the
// crop colour continues beyond the picture.
template <class Pixel, std::int32_t Max>
std::vector<Pixel> blurredInACrop(const Pixel& inside, const Rf& colour) {
  HvTexture<Pixel, Ri> texture(24, 2);
  Fill(texture, inside);
  CropSettings crop = cropOf(0.34f, 0.65f, 0.0f, 1.0f);
  crop.xEdgeMethod = kEdgeColour;
  crop.colour = colour;
  HvTexture<Pixel, Rf> view;
  view.share(texture);
  ApplyCropToTexture(view, crop);
  EXPECT_EQ(view.horizontal.lo, 8);
  EXPECT_EQ(view.horizontal.hi, 15);
  HvTexture<Pixel, Ri> source;
  source.share(view);
  HvTexture<Pixel, Ri> out(24, 2);
  FuzzSampler<Pixel, Ri, Max> sampler;
  sampler.sizeX = 1.0f;
  sampler.process(&source, &out);
  std::vector<Pixel> pixels = PixelsOf(out);
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.begin() + 24, pixels.begin() + 24)) << "both rows are the same";
  pixels.resize(24);
  return pixels;
}

// The first half of a row, and the other half its mirror.
template <class Pixel>
void expectBothHalves(const std::vector<Pixel>& row, const std::array<std::int32_t, 12>& red,
                      const std::array<std::int32_t, 12>& green, const std::array<std::int32_t, 12>& alpha) {
  for (std::size_t i = 0; i < 12; ++i) {
    EXPECT_EQ(row[i], Make<Pixel>(red[i], green[i], 0, alpha[i])) << i;
    EXPECT_EQ(row[23 - i], row[i]) << i;
  }
}

TEST(ApplyCrop, ABlurFadesToTheCropColourAndAlphaToZero) {
  const auto row = blurredInACrop<R8, 255>(Make<R8>(0, 250, 0, 255), MakeFloat(1.0f, 0.0f, 0.0f, 0.0f));
  expectBothHalves(row, {255, 255, 255, 255, 255, 246, 217, 161, 94, 38, 9, 0},
                   {0, 0, 0, 0, 0, 9, 37, 93, 157, 213, 241, 250}, {0, 0, 0, 0, 0, 9, 38, 94, 161, 217, 246, 255});
}

// A crop colour of 1.0 is 16384, not the top of the storage.
TEST(ApplyCrop, ABlurFadesToTheCropColourAtSixteenBits) {
  const auto row = blurredInACrop<R16, 32767>(Make<R16>(0, 32767, 0, 16384), MakeFloat(1.0f, 0.0f, 0.0f, 0.0f));
  expectBothHalves(row, {16381, 16381, 16381, 16381, 16381, 15774, 13954, 10314, 6067, 2427, 607, 0},
                   {0, 0, 0, 0, 0, 1213, 4853, 12134, 20627, 27908, 31548, 32761},
                   {0, 0, 0, 0, 0, 607, 2427, 6067, 10314, 13954, 15774, 16381});
}

}  // namespace
}  // namespace vblur::test
