// Placement records and the render region.
#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "sdk/effects/Content.h"
#include "tests/effect/EffectBench.h"
#include "tests/effect/PartialProject.h"

namespace vblur {
namespace {

void ExpectPlace(const PlaceRecord& place, std::array<float, 4> positionAndSize, std::array<std::int32_t, 2> origin) {
  EXPECT_EQ((std::array{place.positionX, place.positionY, place.sizeX, place.sizeY}), positionAndSize);
  EXPECT_EQ((std::array{place.originX, place.originY}), origin);
}

constexpr Pixel8 kPaper{1, 2, 3, 4};
constexpr Pixel8 kInk{60, 70, 80, 90};

class Placement : public testing::Test {
 protected:
  Placement() {
    Fill(input, kInk, {3, 4}, InWorld({2.0, 3.0}, {16.0, 8.0}));
    Fill(output, kPaper, {2, 1}, InWorld({1.0, 5.0}, {20.0, 12.0}));
    effect->SetEffectHost(&project);
    effect->SetCoordMan(&coordMan);
    effect->SetInput(&input);
    effect->SetOutput(&output);
    Put(PropertyId::Blur, 0.0);
  }

  static void Fill(host::HostImage& image, const Pixel8& colour, std::array<std::int32_t, 2> origin,
                   host::ImageRecord record) {
    Paint<Pixel8>(image, 16, 8, [&](std::int32_t, std::int32_t) { return colour; });
    record.origin = origin;
    image.Place(record);
  }
  void Put(PropertyId id, double value) { effect->PutValue(PropertyOf(id).guid, DSVariant::Of(value)); }

  // Bounding box of the pixels that a frame changed: x0, x1, y0, y1, inclusive.
  std::array<std::int32_t, 4> WrittenBox() {
    EXPECT_EQ(effect->RenderFrame(0.0), kOk);
    std::array<std::int32_t, 4> box{99, -1, 99, -1};
    for (std::int32_t y = 0; y < 8; ++y) {
      for (std::int32_t x = 0; x < 16; ++x) {
        if (At<Pixel8>(output, x, y) == kPaper) continue;
        box = {std::min(box[0], x), std::max(box[1], x), std::min(box[2], y), std::max(box[3], y)};
      }
    }
    return box;
  }

  PartialProject project;
  host::CoordMan coordMan{{1.0, 1.0}};
  host::HostImage input, output, input2;
  ComPtr<Blur> effect = NewBlur();
};

TEST_F(Placement, IsInUserUnitsByTheRatioOfTheHeights) {
  Fill(input2, kInk, {5, 6}, InWorld({-4.0, 0.5}, {32.0, 2.0}));
  effect->SetInput2(&input2);
  ASSERT_EQ(effect->RenderFrame(0.0), kOk);
  ExpectPlace(effect->InputPlace(), {5.0f, 7.5f, 40.0f, 20.0f}, {3, 4});
  ExpectPlace(effect->OutputPlace(), {2.5f, 12.5f, 50.0f, 30.0f}, {2, 1});
  ExpectPlace(effect->Input2Place(), {-10.0f, 1.25f, 80.0f, 5.0f}, {5, 6});
}

TEST_F(Placement, IsNarrowedBeforeAndAfterTheRatio) {
  input.Place(InWorld({0.1, 1.0 / 3.0}, {16777217.0, 1e-3}));
  ASSERT_EQ(effect->RenderFrame(0.0), kOk);
  const auto scaled = [](float world) { return static_cast<float>(static_cast<double>(world) * 2.5); };
  ExpectPlace(effect->InputPlace(), {scaled(0.1f), scaled(1.0f / 3.0f), 41943040.0f, scaled(1e-3f)}, {0, 0});
}

TEST_F(Placement, WantsAllFourSizesOfTheProject) {
  for (const char* missing : kProjectKeys) {
    project = PartialProject();
    project.sizes.erase(missing);
    ASSERT_EQ(effect->RenderFrame(0.0), kOk);
    SCOPED_TRACE(missing);
    ExpectPlace(effect->InputPlace(), {0.0f, 0.0f, 0.0f, 0.0f}, {3, 4});
    ExpectPlace(effect->OutputPlace(), {0.0f, 0.0f, 0.0f, 0.0f}, {2, 1});
  }
}

TEST_F(Placement, OfAnAbsentPictureIsZero) {
  effect->SetInput(nullptr);
  ASSERT_EQ(effect->RenderFrame(0.0), kOk);
  ExpectPlace(effect->InputPlace(), {0.0f, 0.0f, 0.0f, 0.0f}, {0, 0});
  ExpectPlace(effect->Input2Place(), {0.0f, 0.0f, 0.0f, 0.0f}, {0, 0});
}

TEST_F(Placement, HasNoOriginWithoutCoordinates) {
  effect->SetCoordMan(nullptr);
  ASSERT_EQ(effect->RenderFrame(0.0), kOk);
  ExpectPlace(effect->InputPlace(), {5.0f, 7.5f, 40.0f, 20.0f}, {0, 0});
}

TEST_F(Placement, ANewEffectLiesOverTheOpenProject) {
  const host::OpenContent open(project);
  const auto fresh = NewBlur();
  for (const PlaceRecord* place : {&fresh->OutputPlace(), &fresh->InputPlace(), &fresh->Input2Place()})
    ExpectPlace(*place, {0.0f, 0.0f, 250.0f, 60.0f}, {0, 0});
}

TEST_F(Placement, ANewEffectHasASizeOfOneWithoutAProject) {
  const auto fresh = NewBlur();
  for (const PlaceRecord* place : {&fresh->OutputPlace(), &fresh->InputPlace(), &fresh->Input2Place()})
    ExpectPlace(*place, {0.0f, 0.0f, 1.0f, 1.0f}, {0, 0});
}

TEST_F(Placement, TheRegionIsMovedByTheInputsOrigin) {
  effect->SetROI(2, 0, 4, 3);
  // x 2..5 plus the input's origin 3, less the output's origin 2; y 0..2 plus 4, less 1.
  EXPECT_EQ(WrittenBox(), (std::array{3, 6, 3, 5}));
}

TEST_F(Placement, TheRegionIsMovedByTheOutputsOriginWithoutAnInput) {
  effect->SetInput(nullptr);
  effect->SetROI(2, 1, 4, 3);
  EXPECT_EQ(WrittenBox(), (std::array{2, 5, 1, 3}));
  EXPECT_EQ(At<Pixel8>(output, 2, 1), (Pixel8{0, 0, 0, 0}));
}

TEST_F(Placement, AnUnusableInputIsClearAndStillMovesTheRegion) {
  UnusableImage unusable(input);
  effect->SetInput(&unusable);
  effect->SetROI(2, 0, 4, 3);
  EXPECT_EQ(WrittenBox(), (std::array{3, 6, 3, 5}));
  EXPECT_EQ(At<Pixel8>(output, 3, 3), (Pixel8{0, 0, 0, 0}));
}

TEST_F(Placement, TheRegionOfAFieldHasHalfTheRows) {
  input.Place(AtOrigin(2, 1));
  effect->SetField(2);
  // Rows 3..7 plus 1 are 4..8, and 2..4 in the field, whose origin is 0.
  effect->SetROI(2, 3, 4, 5);
  EXPECT_EQ(WrittenBox(), (std::array{2, 5, 5, 7}));
  EXPECT_EQ(At<Pixel8>(output, 2, 6), kPaper);
}

TEST_F(Placement, HalfARowIsLeftOutTowardsZero) {
  input.Place(AtOrigin(2, -5));
  output.Place(AtOrigin(2, -5));
  effect->SetField(1);
  // Rows -3..-1 become -1..0; the field's origin is -2.
  effect->SetROI(0, 2, 1, 3);
  EXPECT_EQ(WrittenBox(), (std::array{0, 0, 2, 4}));
}

}  // namespace
}  // namespace vblur
