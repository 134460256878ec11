
#include <gtest/gtest.h>

#include "composite/ApplyCrop.h"
#include "composite/BlankOutside.h"
#include "image/SimpleCopySampler.h"
#include "tests/composite/Pictures.h"
#include "tests/model/copy.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

CropSettings CropOf(float left, float right, float bottom, float top) {
  CropSettings crop;
  crop.mode = kCropBoxAndEdges;
  crop.left = left;
  crop.right = right;
  crop.bottom = bottom;
  crop.top = top;
  crop.xEdgeMethod = kEdgeReflect;
  crop.yEdgeMethod = kEdgeReflect;
  return crop;
}

TEST(ApplyCrop, TheWholePictureIsTheDefault) {
  HvTexture<R8, Rf> texture(100, 50);
  ApplyCropToTexture(texture, CropOf(0.0f, 1.0f, 0.0f, 1.0f));
  EXPECT_EQ(texture.horizontal.lo, 0);
  EXPECT_EQ(texture.horizontal.hi, 99);
  EXPECT_EQ(texture.vertical.lo, 0);
  EXPECT_EQ(texture.vertical.hi, 49);
  EXPECT_EQ(texture.horizontal.edgeMethod, kEdgeReflect);
  EXPECT_EQ(texture.vertical.edgeMethod, kEdgeReflect);
}

TEST(ApplyCrop, RightAndTopEndsBelongToTheBox) {
  HvTexture<R8, Rf> texture(100, 40);
  ApplyCropToTexture(texture, CropOf(0.0f, 0.5f, 0.25f, 0.5f));
  EXPECT_EQ(texture.horizontal.hi, 50);
  EXPECT_EQ(texture.horizontal.count, 51);
  EXPECT_EQ(texture.vertical.lo, 10);
  EXPECT_EQ(texture.vertical.hi, 20);
}

TEST(ApplyCrop, SwappedEndsGiveTheSameBox) {
  HvTexture<R8, Rf> one(100, 100);
  HvTexture<R8, Rf> other(100, 100);
  ApplyCropToTexture(one, CropOf(0.6f, 0.4f, 0.8f, 0.1f));
  ApplyCropToTexture(other, CropOf(0.4f, 0.6f, 0.1f, 0.8f));
  EXPECT_EQ(one.horizontal.lo, other.horizontal.lo);
  EXPECT_EQ(one.horizontal.hi, other.horizontal.hi);
  EXPECT_EQ(one.vertical.lo, other.vertical.lo);
  EXPECT_EQ(one.vertical.hi, other.vertical.hi);
}

TEST(ApplyCrop, EqualEndsLeaveOneColumnThatRepeatSmears) {
  HvTexture<R8, Rf> texture(4, 1);
  for (std::int32_t x = 0; x < 4; ++x)
    *texture.at(x, 0) = Make<R8>(x, x, x, x);
  CropSettings crop = CropOf(0.5f, 0.5f, 0.0f, 1.0f);
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
  ApplyCropToTexture(texture, CropOf(-3.0f, 1e20f, 1.5f, 2.0f));
  // A fraction that no 32-bit integer holds counts as far left.
  EXPECT_EQ(texture.horizontal.lo, 0);
  EXPECT_EQ(texture.horizontal.hi, 0);
  EXPECT_EQ(texture.vertical.lo, 9);
  EXPECT_EQ(texture.vertical.hi, 9);
}

TEST(ApplyCrop, ColourIsInTheScaleOfThePixel) {
  CropSettings crop = CropOf(0.0f, 1.0f, 0.0f, 1.0f);
  crop.colour = MakeFloat(1.0f, 0.5f, 0.0f, 0.0f);
  HvTexture<R8, Rf> narrow(2, 2);
  ApplyCropToTexture(narrow, crop);
  EXPECT_EQ(narrow.outsideColour, Make<R8>(255, 127, 0, 0));
  HvTexture<R16, Rf> wide(2, 2);
  ApplyCropToTexture(wide, crop);
  EXPECT_EQ(wide.outsideColour, Make<R16>(16384, 8192, 0, 0));
}

TEST(ApplyCrop, ModesChangeNothingOrTheBoxOnly) {
  CropSettings crop = CropOf(0.25f, 0.5f, 0.25f, 0.5f);
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
  CropSettings crop = CropOf(0.0f, 1.0f, 0.0f, 1.0f);
  crop.colour = MakeFloat(1.0f, 0.0f, 0.0f, 0.0f);
  HvTexture<R8, Rf> texture;
  ApplyCropToTexture(texture, crop);
  EXPECT_EQ(texture.horizontal.edgeMethod, kEdgeReflect);
  EXPECT_EQ(*texture.readRun(0, 0).first, Make<R8>(255, 0, 0, 0));
}

TEST(CroppedDisplay, ShowsTheCropColourBeyondTheBox) {
  HvTexture<R8, Rf> texture(4, 2);
  Fill(texture, Make<R8>(9, 9, 9, 9));
  CropSettings crop = CropOf(0.25f, 0.5f, 0.0f, 1.0f);
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

template <class Pixel>
class Blanking : public testing::Test {
 protected:
  static constexpr std::int32_t kSide = 10;
  // Which pixels of a filled square are left, after blanking by a crop of it.
  static std::vector<bool> Left(const CropSettings& crop, const std::optional<StageWindow>& window = std::nullopt) {
    HvTexture<Pixel, Rf> picture(kSide, kSide);
    Fill(picture, Make<Pixel>(1, 2, 3, 4));
    BlankOutside(picture, picture, crop, window, nullptr);
    std::vector<bool> left;
    for (const Pixel& pixel : PixelsOf(picture)) {
      EXPECT_TRUE(pixel == Pixel{} || pixel == Make<Pixel>(1, 2, 3, 4));
      left.push_back(pixel != Pixel{});
    }
    return left;
  }
  static std::vector<bool> Square(std::int32_t x1, std::int32_t x2, std::int32_t y1, std::int32_t y2) {
    std::vector<bool> left;
    for (std::int32_t y = 0; y < kSide; ++y) {
      for (std::int32_t x = 0; x < kSide; ++x)
        left.push_back(x >= x1 && x < x2 && y >= y1 && y < y2);
    }
    return left;
  }
};

using Depths = testing::Types<R8, R16>;
TYPED_TEST_SUITE(Blanking, Depths);

TYPED_TEST(Blanking, BlankCroppedClearsFirstAndLastRow) {
  EXPECT_EQ(this->Left(CropOf(0.0f, 1.0f, 0.0f, 1.0f)), this->Square(0, 10, 1, 9));
}

TYPED_TEST(Blanking, BlankCroppedClearsLastColumnAndRowOfTheBox) {
  // The box is 2 to 5 and 3 to 7, both ends included.
  EXPECT_EQ(this->Left(CropOf(0.2f, 0.5f, 0.3f, 0.7f)), this->Square(2, 5, 3, 7));
}

TYPED_TEST(Blanking, SwappedEndsAreNotPutInOrder) {
  // With left at 7 and right at 3 the two sides meet: nothing of the row is left.
  EXPECT_EQ(this->Left(CropOf(0.7f, 0.3f, 0.0f, 1.0f)), this->Square(0, 0, 0, 0));
}

TYPED_TEST(Blanking, AWindowIsBlankedAloneAndHasItsOwnFirstAndLastRow) {
  const std::vector<bool> left = this->Left(CropOf(0.0f, 1.0f, 0.0f, 1.0f), StageWindow{2, 3, 6, 7});
  for (std::int32_t y = 0; y < 10; ++y) {
    for (std::int32_t x = 0; x < 10; ++x) {
      const bool cleared = x >= 2 && x <= 6 && (y == 3 || y == 7);
      EXPECT_EQ(left[static_cast<std::size_t>(y * 10 + x)], !cleared) << x << ", " << y;
    }
  }
}

TYPED_TEST(Blanking, PlacesAndWindowsEqualTheModel) {
  using Pixel = TypeParam;
  forRandomCases(500, [](Random& random) {
    const int most = random.oneIn(4) ? 90 : 12;
    HvTexture<Pixel, Rf> output(random.within(1, most), random.within(1, 12));
    FillRandom(output, random);
    output.setWriteOrigin(random.within(-5, 5), random.within(-5, 5));
    HvTexIndexer source;
    source.horizontal.setSize(random.within(0, most + 2));
    source.vertical.setSize(random.within(0, 14));
    source.setOrigin(random.within(-5, 5), random.within(-5, 5));
    const auto fraction = [&] { return static_cast<float>(random.within(-20, 120)) / 100.0f; };
    const CropSettings crop = CropOf(fraction(), fraction(), fraction(), fraction());
    const auto place = [](const HvTexAxis& axis, float f) {
      return static_cast<int>(static_cast<float>(axis.size) * f + static_cast<float>(axis.originI));
    };
    model::Rectangle kept;
    kept.left = place(source.horizontal, crop.left);
    kept.right = place(source.horizontal, crop.right);
    kept.bottom = place(source.vertical, crop.bottom);
    kept.top = place(source.vertical, crop.top);
    std::optional<StageWindow> window;
    std::optional<model::Window> modelWindow;
    if (random.oneIn(2)) {
      window = StageWindow{random.within(-8, 8), random.within(-8, 8), 0, 0};
      window->x2 = window->x1 + random.within(0, most);
      window->y2 = window->y1 + random.within(0, 12);
      modelWindow = model::Window{window->x1, window->y1, window->x2, window->y2};
    }
    model::Picture expected = ModelOf(output);
    model::BlankOutside(expected, kept, model::Settle(modelWindow, expected));
    const ThreadCount threads(random.oneOf({1, 2, 3, 7, 8}));
    const CpuLevel level(randomCpuLevel(random));
    BlankOutside(output, source, crop, window, nullptr);
    EXPECT_EQ(CountDifferent(output, expected), 0);
  });
}

TYPED_TEST(Blanking, StopsWithTheFrame) {
  HvTexture<TypeParam, Rf> picture(4, 4);
  Fill(picture, Make<TypeParam>(1, 2, 3, 4));
  HvInterruptRecord record;
  record.interrupted = 1;
  BlankOutside(picture, picture, CropOf(0.0f, 0.0f, 0.0f, 0.0f), std::nullopt, &record);
  for (const TypeParam& pixel : PixelsOf(picture))
    EXPECT_EQ(pixel, Make<TypeParam>(1, 2, 3, 4));
}

}  // namespace
}  // namespace vblur::test
