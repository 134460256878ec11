// The box, edge methods and outside colour that a crop gives to a texture.
#include "composite/ApplyCrop.h"

#include <gtest/gtest.h>

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
  // A fraction that no 32-bit integer holds counts as far left.
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

}  // namespace
}  // namespace vblur::test
