// What blanking by a crop keeps of a finished picture.
#include "composite/BlankOutside.h"

#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "tests/composite/CropOf.h"
#include "tests/composite/Pictures.h"
#include "tests/model/copy.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

template <class Pixel>
class BlankOutsideAtBothDepths : public testing::Test {
 protected:
  static constexpr std::int32_t kSide = 10;
  // The pixels of a filled square that blanking keeps.
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

TYPED_TEST_SUITE(BlankOutsideAtBothDepths, Depths, TypeNames);

template <class Pixel>
class BlankOutsideAtAllDepths : public testing::Test {};

TYPED_TEST_SUITE(BlankOutsideAtAllDepths, DepthsAndFloats, TypeNames);

TYPED_TEST(BlankOutsideAtBothDepths, BlankCroppedClearsFirstAndLastRow) {
  EXPECT_EQ(this->Left(cropOf(0.0f, 1.0f, 0.0f, 1.0f)), this->Square(0, 10, 1, 9));
}

TYPED_TEST(BlankOutsideAtBothDepths, BlankCroppedClearsLastColumnAndRowOfTheBox) {
  // The box is 2..5 and 3..7, ends inclusive.
  EXPECT_EQ(this->Left(cropOf(0.2f, 0.5f, 0.3f, 0.7f)), this->Square(2, 5, 3, 7));
}

TYPED_TEST(BlankOutsideAtBothDepths, SwappedEndsAreNotPutInOrder) {
  // With left at 7 and right at 3 the two filled sides overlap: nothing of a row is kept.
  EXPECT_EQ(this->Left(cropOf(0.7f, 0.3f, 0.0f, 1.0f)), this->Square(0, 0, 0, 0));
}

TYPED_TEST(BlankOutsideAtBothDepths, AWindowIsBlankedAloneAndHasItsOwnFirstAndLastRow) {
  const std::vector<bool> left = this->Left(cropOf(0.0f, 1.0f, 0.0f, 1.0f), StageWindow{2, 3, 6, 7});
  for (std::int32_t y = 0; y < 10; ++y) {
    for (std::int32_t x = 0; x < 10; ++x) {
      const bool cleared = x >= 2 && x <= 6 && (y == 3 || y == 7);
      EXPECT_EQ(left[static_cast<std::size_t>(y * 10 + x)], !cleared) << x << ", " << y;
    }
  }
}

TYPED_TEST(BlankOutsideAtBothDepths, AWindowWithoutRowsOrColumnsBlanksNothing) {
  for (const StageWindow& window : {StageWindow{2, 5, 6, 4}, StageWindow{2, 5, 1, 8}, StageWindow{2, 5, 1, 4}}) {
    for (const float end : {0.0f, 0.3f, 0.7f, 1.0f}) {
      EXPECT_EQ(this->Left(cropOf(0.3f, end, 0.3f, end), window), this->Square(0, 10, 0, 10)) << end;
      EXPECT_EQ(this->Left(cropOf(0.7f, end, 0.7f, end), window), this->Square(0, 10, 0, 10)) << end;
    }
  }
}

TYPED_TEST(BlankOutsideAtAllDepths, PlacesAndWindowsEqualTheModel) {
  using Pixel = TypeParam;
  forgetKernelRuns();
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
    const CropSettings crop = cropOf(fraction(), fraction(), fraction(), fraction());
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
    BlankOutside(output, source, crop, window, nullptr);
    EXPECT_EQ(CountDifferent(output, expected), 0);
  });
  EXPECT_TRUE(kernelsRan({})) << "plain code serves every level";
}

TEST(BlankOutsideInFloats, KeepsTheRectangleOfTheCrop) {
  HvTexture<Rf, Rf> picture(4, 4);
  const Rf kept = MakeFloat(-1.0f, 0.1f, 200.0f, 0.5f);
  Fill(picture, kept);
  BlankOutside(picture, picture, cropOf(0.25f, 0.75f, 0.0f, 1.0f), std::nullopt, nullptr);
  for (std::int32_t y = 0; y < 4; ++y) {
    for (std::int32_t x = 0; x < 4; ++x)
      EXPECT_EQ(*picture.at(x, y), x >= 1 && x < 3 && y >= 1 && y < 3 ? kept : Rf{}) << x << ", " << y;
  }
}

TYPED_TEST(BlankOutsideAtBothDepths, StopsWithTheFrame) {
  HvTexture<TypeParam, Rf> picture(4, 4);
  Fill(picture, Make<TypeParam>(1, 2, 3, 4));
  HvInterruptRecord record;
  record.interrupted = 1;
  BlankOutside(picture, picture, cropOf(0.0f, 0.0f, 0.0f, 0.0f), std::nullopt, &record);
  for (const TypeParam& pixel : PixelsOf(picture))
    EXPECT_EQ(pixel, Make<TypeParam>(1, 2, 3, 4));
}

}  // namespace
}  // namespace vblur::test
