// Hit tests of the axis control.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "overlay/HvT2DAxis.h"
#include "tests/support/Random.h"

namespace vblur {
namespace {

using Axis = HvT2DAxis;

constexpr std::uint32_t kAllHandles = 127;
constexpr std::uint32_t kBoxHandles = Axis::kScale | Axis::kScaleX | Axis::kScaleY;
constexpr HvPoint kTwo{2, 2};

std::uint32_t pickAt(HvT2DAxis& axis, HvPoint pos, HvPoint tolerance = kTwo) {
  const HvPick pick = axis.Pick(pos, tolerance);
  HvTObject* const expected = axis.Active() == 0 ? nullptr : &axis;
  EXPECT_EQ(pick.Object(), expected);
  EXPECT_EQ(axis.Target(), expected);
  EXPECT_FALSE(pick.IsSwallowed());
  return axis.Active();
}

// On a control at (0, 0), with scale 1 and rotation 0.
std::uint32_t pickOf(std::uint32_t mask, HvPoint pos, HvPoint tolerance = kTwo) {
  HvT2DAxis axis("axis", mask);
  return pickAt(axis, pos, tolerance);
}

TEST(HvT2DAxisPick, TakesTheCentreAndNotAnArrow) {
  HvT2DAxis axis("axis", kAllHandles);
  axis.SetCentre(100, 50);
  EXPECT_EQ(pickAt(axis, {100, 50}), 3u);
}

TEST(HvT2DAxisPick, GivesTheCentreAMarginOfThree) {
  EXPECT_EQ(pickOf(3, {4.75f, 4.75f}), 3u);
  EXPECT_EQ(pickOf(3, {-4.75f, -4.75f}), 3u);
  EXPECT_EQ(pickOf(3, {5, 0}), 1u);
  EXPECT_EQ(pickOf(3, {-5, 0}), 1u);
  EXPECT_EQ(pickOf(3, {0, 5}), 2u);
  EXPECT_EQ(pickOf(3, {0, -5}), 2u);
  EXPECT_EQ(pickOf(3, {5, 4}), 0u);
  EXPECT_EQ(pickOf(3, {3.75f, 0}, {1, 9}), 3u);
  EXPECT_EQ(pickOf(3, {4, 0}, {1, 9}), 1u);
  EXPECT_EQ(pickOf(3, {0, 3.75f}, {9, 1}), 3u);
  EXPECT_EQ(pickOf(3, {0, 4}, {9, 1}), 2u);
}

TEST(HvT2DAxisPick, OffersTheCentreToBothTranslationsAlone) {
  EXPECT_EQ(pickOf(Axis::kTranslateX, {0, 0}), 1u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {0, 0}), 2u);
  EXPECT_EQ(pickOf(kAllHandles & ~3u, {0, 0}), 0u);
}

TEST(HvT2DAxisPick, GivesTheDotOfTheAspectAMarginOfThree) {
  EXPECT_EQ(pickOf(Axis::kAspect, {37, 37}), 64u);
  EXPECT_EQ(pickOf(Axis::kAspect, {41.75f, 41.75f}), 64u);
  EXPECT_EQ(pickOf(Axis::kAspect, {32.25f, 32.25f}), 64u);
  EXPECT_EQ(pickOf(Axis::kAspect, {42, 37}), 0u);
  EXPECT_EQ(pickOf(Axis::kAspect, {32, 37}), 0u);
  EXPECT_EQ(pickOf(Axis::kAspect, {37, 42}), 0u);
  EXPECT_EQ(pickOf(Axis::kAspect, {37, 32}), 0u);
  EXPECT_EQ(pickOf(Axis::kAspect, {40.75f, 37}, {1, 9}), 64u);
  EXPECT_EQ(pickOf(Axis::kAspect, {41, 37}, {1, 9}), 0u);
  EXPECT_EQ(pickOf(Axis::kAspect, {37, 40.75f}, {9, 1}), 64u);
  EXPECT_EQ(pickOf(Axis::kAspect, {37, 41}, {9, 1}), 0u);
}

TEST(HvT2DAxisPick, FindsTheDotBeyondTheCorner) {
  const float dot = 37.0f + 10.0f / std::numbers::sqrt2_v<float>;
  EXPECT_EQ(pickOf(kAllHandles, {dot + 4.9f, dot - 4.9f}), 64u);
  EXPECT_EQ(pickOf(kAllHandles, {dot + 5.1f, dot}), 0u);
  EXPECT_EQ(pickOf(kAllHandles, {-dot, dot}), 0u);
}

TEST(HvT2DAxisPick, GivesTheArrowsTheToleranceAlone) {
  EXPECT_EQ(pickOf(Axis::kTranslateX, {38.75f, 1.75f}), 1u);
  EXPECT_EQ(pickOf(Axis::kTranslateX, {-38.75f, -1.75f}), 1u);
  EXPECT_EQ(pickOf(Axis::kTranslateX, {39, 0}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateX, {-39, 0}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateX, {10, 2}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateX, {10, -2}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateX, {45.75f, 0}, {9, 1}), 1u);
  EXPECT_EQ(pickOf(Axis::kTranslateX, {10, 1}, {9, 1}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {1.75f, 38.75f}), 2u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {-1.75f, -38.75f}), 2u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {0, 39}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {0, -39}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {2, 10}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {-2, 10}), 0u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {0, 45.75f}, {1, 9}), 2u);
  EXPECT_EQ(pickOf(Axis::kTranslateY, {1, 10}, {1, 9}), 0u);
}

TEST(HvT2DAxisPick, FindsTheArcByTheToleranceAcross) {
  EXPECT_EQ(pickOf(Axis::kRotate, {33.75f, 0}), 32u);
  EXPECT_EQ(pickOf(Axis::kRotate, {30.25f, 0}), 32u);
  EXPECT_EQ(pickOf(Axis::kRotate, {34, 0}), 0u);
  EXPECT_EQ(pickOf(Axis::kRotate, {30, 0}), 0u);
  EXPECT_EQ(pickOf(Axis::kRotate, {32, 0}, {2, 0}), 32u);
  EXPECT_EQ(pickOf(Axis::kRotate, {32, 0}, {0, 100}), 0u);
}

TEST(HvT2DAxisPick, EndsTheArcBeforeFortyFiveDegrees) {
  EXPECT_EQ(pickOf(Axis::kRotate, {22.7f, 22.5f}), 32u);
  EXPECT_EQ(pickOf(Axis::kRotate, {22.7f, -22.5f}), 32u);
  EXPECT_EQ(pickOf(Axis::kRotate, {22.5f, 22.5f}), 0u);
  EXPECT_EQ(pickOf(Axis::kRotate, {22.5f, -22.5f}), 0u);
  EXPECT_EQ(pickOf(Axis::kRotate, {22.5f, 22.7f}), 0u);
  EXPECT_EQ(pickOf(Axis::kRotate, {0, 32}), 0u);
  EXPECT_EQ(pickOf(Axis::kRotate, {-32, 0}), 0u);
}

TEST(HvT2DAxisPick, FindsTheCorners) {
  for (const float x : {-37.0f, 37.0f}) {
    for (const float y : {-37.0f, 37.0f}) {
      EXPECT_EQ(pickOf(kBoxHandles, {x, y}), 4u);
      EXPECT_EQ(pickOf(kBoxHandles, {x * 38.75f / 37, y * 35.25f / 37}), 4u);
    }
  }
  EXPECT_EQ(pickOf(Axis::kScale, {39, 37}), 0u);
  EXPECT_EQ(pickOf(Axis::kScale, {35, 37}), 0u);
  EXPECT_EQ(pickOf(Axis::kScale, {37, 39}), 0u);
  EXPECT_EQ(pickOf(Axis::kScale, {37, 35}), 0u);
  EXPECT_EQ(pickOf(Axis::kScale, {37, 0}), 0u);
}

TEST(HvT2DAxisPick, FindsTheEdgesBetweenTheCorners) {
  EXPECT_EQ(pickOf(Axis::kScaleX, {38.75f, 0}), 8u);
  EXPECT_EQ(pickOf(Axis::kScaleX, {-35.25f, 20}), 8u);
  EXPECT_EQ(pickOf(Axis::kScaleX, {39, 0}), 0u);
  EXPECT_EQ(pickOf(Axis::kScaleX, {-35, 0}), 0u);
  EXPECT_EQ(pickOf(Axis::kScaleX, {37, 36.75f}), 8u);
  EXPECT_EQ(pickOf(Axis::kScaleX, {37, -36.75f}), 8u);
  EXPECT_EQ(pickOf(Axis::kScaleX, {37, 37}), 0u);
  EXPECT_EQ(pickOf(Axis::kScaleX, {37, -37}), 0u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {0, 38.75f}), 16u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {20, -35.25f}), 16u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {0, 39}), 0u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {0, -35}), 0u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {36.75f, 37}), 16u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {-36.75f, 37}), 16u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {37, 37}), 0u);
  EXPECT_EQ(pickOf(Axis::kScaleY, {-37, 37}), 0u);
}

// Several handles at one point, in their order.
TEST(HvT2DAxisPick, TriesHandlesInTheirOrder) {
  const HvPoint wide{30, 30};
  const HvPoint pos{30, 20};
  EXPECT_EQ(pickOf(127, pos, wide), 64u);
  EXPECT_EQ(pickOf(63, pos, wide), 3u);
  EXPECT_EQ(pickOf(62, pos, wide), 32u);
  EXPECT_EQ(pickOf(61, pos, wide), 32u);
  EXPECT_EQ(pickOf(60, pos, wide), 32u);
  EXPECT_EQ(pickOf(30, pos, wide), 4u);
  EXPECT_EQ(pickOf(29, pos, wide), 4u);
  EXPECT_EQ(pickOf(26, pos, wide), 8u);
  EXPECT_EQ(pickOf(25, pos, wide), 8u);
  EXPECT_EQ(pickOf(18, pos, wide), 16u);
  EXPECT_EQ(pickOf(17, pos, wide), 16u);
  EXPECT_EQ(pickOf(1, pos, wide), 1u);
  // The comparison is strict.
  EXPECT_EQ(pickOf(2, pos, wide), 0u);
  EXPECT_EQ(pickOf(2, {29, 20}, wide), 2u);
  EXPECT_EQ(pickOf(0, pos, wide), 0u);
}

TEST(HvT2DAxisPick, TakesTheEdgeOnlyWhereTheCornerIsOutOfReach) {
  EXPECT_EQ(pickOf(kBoxHandles, {37, 35}), 8u);
  EXPECT_EQ(pickOf(kBoxHandles, {35, 37}), 16u);
  EXPECT_EQ(pickOf(Axis::kScaleX | Axis::kScaleY, {36, 36}), 8u);
}

TEST(HvT2DAxisPick, FollowsTheHandleScale) {
  HvT2DAxis axis("axis", kAllHandles);
  axis.SetHandleScale(0.5f);
  EXPECT_EQ(pickAt(axis, {16, 0}), 32u);
  EXPECT_EQ(pickAt(axis, {-18.5f, 18.5f}), 4u);
  EXPECT_EQ(pickAt(axis, {18.5f, 3}), 8u);
  EXPECT_EQ(pickAt(axis, {3, -18.5f}), 16u);
  EXPECT_EQ(pickAt(axis, {0, 10}), 2u);
  EXPECT_EQ(pickAt(axis, {10, 0}), 1u);
  EXPECT_EQ(pickAt(axis, {4.75f, 0}), 3u);
  const float dot = 18.5f + 5.0f / std::numbers::sqrt2_v<float>;
  EXPECT_EQ(pickAt(axis, {dot + 4.9f, dot}), 64u);
  EXPECT_EQ(pickAt(axis, {dot + 5.1f, dot}), 0u);
}

TEST(HvT2DAxisPick, RotatesAllHandlesButTheArrows) {
  HvT2DAxis axis("axis", kAllHandles);
  axis.SetCentre(100, 200);
  axis.SetRotation(90);
  axis.SetAxisScale(2, 1);
  const auto at = [&](float x, float y) { return pickAt(axis, {100 + x, 200 + y}); };
  EXPECT_EQ(at(0, 32), 32u);
  EXPECT_EQ(at(32, 0), 1u);
  EXPECT_EQ(at(-37, 74), 4u);
  EXPECT_EQ(at(37, -74), 4u);
  EXPECT_EQ(at(74, 37), 0u);
  EXPECT_EQ(at(5, 74), 8u);
  EXPECT_EQ(at(37, 50), 16u);
  EXPECT_EQ(at(0, 20), 2u);
  EXPECT_EQ(at(20, 0), 1u);
  const float length = std::hypot(37.0f, 74.0f);
  EXPECT_EQ(at(-37 - 37 / length * 10, 74 + 74 / length * 10), 64u);
}

TEST(HvT2DAxisPick, MeasuresTheBoxInTheParentsUnits) {
  HvT2DAxis axis("axis", kBoxHandles);
  axis.SetScale(0.5f);
  axis.SetAxisScale(2, 3);
  EXPECT_EQ(pickAt(axis, {37, 55.5f}), 4u);
  EXPECT_EQ(pickAt(axis, {38.75f, 57.25f}), 4u);
  EXPECT_EQ(pickAt(axis, {37, 57.6f}), 0u);
  EXPECT_EQ(pickAt(axis, {38.75f, 20}), 8u);
  EXPECT_EQ(pickAt(axis, {39.1f, 20}), 0u);
  EXPECT_EQ(pickAt(axis, {20, 53.75f}), 16u);
  EXPECT_EQ(pickAt(axis, {20, 53.4f}), 0u);
  axis.SetAspect(0.5f);
  EXPECT_EQ(pickAt(axis, {37, 27.75f}), 4u);
  axis.SetAspect(-0.5f);
  EXPECT_EQ(pickAt(axis, {18.5f, 55.5f}), 4u);
}

TEST(HvT2DAxisPick, NotesWhichSideOfTheBoxWasTaken) {
  HvT2DAxis axis("axis", kBoxHandles);
  const auto flipsAt = [&](float x, float y) {
    pickAt(axis, {x, y});
    return axis.FlipFlags();
  };
  EXPECT_EQ(flipsAt(37, 37), 0u);
  EXPECT_EQ(flipsAt(-37, 37), 8u);
  EXPECT_EQ(flipsAt(-37, -37), 24u);
  EXPECT_EQ(flipsAt(37, -37), 16u);
  // An edge is one side.
  EXPECT_EQ(flipsAt(-37, -10), 8u);
  EXPECT_EQ(flipsAt(37, -10), 0u);
  EXPECT_EQ(flipsAt(-10, -37), 16u);
  EXPECT_EQ(flipsAt(-10, 37), 0u);
}

TEST(HvT2DAxisPick, CountsNegativeScalesAsTheOtherSide) {
  HvT2DAxis axis("axis", kBoxHandles);
  const auto flipsAt = [&](float x, float y) {
    pickAt(axis, {x, y});
    return axis.FlipFlags();
  };
  axis.SetScale(-1);
  EXPECT_EQ(flipsAt(37, 37), 24u);
  EXPECT_EQ(axis.Active(), 4u);
  EXPECT_EQ(flipsAt(-37, -37), 0u);
  EXPECT_EQ(flipsAt(37, 10), 8u);
  EXPECT_EQ(axis.Active(), 8u);
  axis.SetAxisScale(1, -1);
  EXPECT_EQ(flipsAt(37, 37), 8u);
  EXPECT_EQ(flipsAt(37, -37), 24u);
  EXPECT_EQ(flipsAt(10, -37), 16u);
  EXPECT_EQ(axis.Active(), 16u);
}

TEST(HvT2DAxisPick, UndoesTheRotationBeforeItNotesTheSide) {
  HvT2DAxis axis("axis", kBoxHandles);
  axis.SetRotation(90);
  pickAt(axis, {-37, 10});
  EXPECT_EQ(axis.Active(), 16u);
  EXPECT_EQ(axis.FlipFlags(), 0u);
  pickAt(axis, {37, 37});
  EXPECT_EQ(axis.Active(), 4u);
  EXPECT_EQ(axis.FlipFlags(), 16u);
}

TEST(HvT2DAxisPick, LeavesTheSideToHandlesOfTheBox) {
  HvT2DAxis axis("axis", kAllHandles);
  pickAt(axis, {-37, -37});
  for (const HvPoint elsewhere : {HvPoint{0, 0}, HvPoint{32, 0}, HvPoint{0, 20}, HvPoint{20, 0}, HvPoint{90, 0}}) {
    pickAt(axis, elsewhere);
    EXPECT_EQ(axis.FlipFlags(), 24u);
  }
}

TEST(HvT2DAxisPick, FindsNoGripOnACollapsedBox) {
  HvT2DAxis axis("axis", kBoxHandles);
  axis.SetAxisScale(0, 1);
  for (const HvPoint pos : {HvPoint{0, 0}, HvPoint{0, 37}, HvPoint{5, 37}, HvPoint{37, 37}, HvPoint{0, 5}})
    EXPECT_EQ(pickAt(axis, pos), 0u);
  axis.SetScale(0);
  EXPECT_EQ(pickAt(axis, {0, 0}), 0u);
}

TEST(HvT2DAxisPick, PutsTheDotOfACollapsedBoxBeforeTheCentre) {
  HvT2DAxis axis("axis", kAllHandles);
  axis.SetScale(0);
  EXPECT_EQ(pickAt(axis, {0, 0}), 64u);
}

TEST(HvT2DAxisPick, ForgetsWhatItHadOnAMiss) {
  HvT2DAxis axis("axis", kAllHandles);
  EXPECT_EQ(pickAt(axis, {0, 0}), 3u);
  EXPECT_EQ(pickAt(axis, {200, 0}), 0u);
}

TEST(HvT2DAxisPick, FindsNothingWhereTranslationIsOff) {
  HvT2DAxis axis("axis", kAllHandles);
  EXPECT_EQ(pickAt(axis, {37, 37}), 4u);
  axis.SetAxisFlags(HvT2DAxis::kNoTranslation);
  EXPECT_FALSE(axis.Pick({37, 37}, kTwo).EndsSearch());
  EXPECT_EQ(axis.Active(), 0u);
  // The container clears it.
  EXPECT_EQ(axis.Target(), &axis);
}

// Model of the hit test in double precision. Points at a bound are left out, since rounding decides there.
class AxisModel {
 public:
  AxisModel(const HvT2DAxis& axis, HvPoint pos, HvPoint tolerance)
      : axis_(axis), t_(tolerance), dx_(pos.x - axis.Centre().x), dy_(pos.y - axis.Centre().y) {
    const double angle = -axis.Rotation() * std::numbers::pi / 180;
    rx_ = dx_ * std::cos(angle) - dy_ * std::sin(angle);
    ry_ = dy_ * std::cos(angle) + dx_ * std::sin(angle);
    length_ = 37.0 * axis.HandleScale();
    hx_ = axis.Scale() * axis.AxisScale().x * axis.XAspect();
    hy_ = axis.Scale() * axis.AxisScale().y * axis.YAspect();
  }

  std::uint32_t handle() {
    const auto dot = axis_.AspectHandlePos();
    if (has(64) && below(dot.x - rx_, t_.x + 3) && below(dot.y - ry_, t_.y + 3)) return 64;
    if (has(1) && has(2) && below(dx_, t_.x + 3) && below(dy_, t_.y + 3)) return 3;
    const double angle = std::atan2(ry_, rx_) * 180 / std::numbers::pi;
    if (has(32) && below(std::hypot(rx_, ry_) - 32.0 * axis_.HandleScale(), t_.x) && below(angle, 45)) return 32;
    const bool nearX = below(std::abs(rx_) - length_ * std::abs(hx_), t_.x);
    const bool nearY = below(std::abs(ry_) - length_ * std::abs(hy_), t_.y);
    const bool betweenX = below(rx_, length_ * std::abs(hx_));
    const bool betweenY = below(ry_, length_ * std::abs(hy_));
    if (has(4) && nearX && nearY) return 4;
    if (has(8) && nearX && betweenY) return 8;
    if (has(16) && nearY && betweenX) return 16;
    if (has(2) && below(dx_, t_.x) && below(dy_, length_ + t_.y)) return 2;
    if (has(1) && below(dy_, t_.y) && below(dx_, length_ + t_.x)) return 1;
    return 0;
  }
  bool isAtABound() const { return closest_ < 1e-3; }

 private:
  bool has(std::uint32_t bit) const { return (axis_.HandleMask() & bit) != 0; }
  bool below(double offset, double reach) {
    closest_ = std::min(closest_, std::abs(std::abs(offset) - reach));
    return std::abs(offset) < reach;
  }

  const HvT2DAxis& axis_;
  HvPoint t_;
  double dx_;
  double dy_;
  double rx_;
  double ry_;
  double length_;
  double hx_;
  double hy_;
  double closest_ = 1e9;
};

TEST(HvT2DAxisPick, AgreesWithTheListOfHandlesWhateverTheFields) {
  std::vector<int> found(128);
  int cases = 0;
  test::forRandomCases(400, [&](test::Random& random) {
    ++cases;
    HvT2DAxis axis("axis", static_cast<std::uint32_t>(random.within(0, 127)));
    axis.SetHandleScale(random.between(0.5f, 2));
    axis.SetScale(random.between(0.25f, 2) * random.oneOf({1.0f, -1.0f}));
    axis.SetAxisScale(random.between(0.25f, 2) * random.oneOf({1.0f, -1.0f}), random.between(0.25f, 2));
    axis.SetRotation(random.between(-360, 360));
    axis.SetAspect(random.between(-0.75f, 0.75f));
    axis.SetCentre(random.between(-50, 50), random.between(-50, 50));
    const HvPoint tolerance{random.between(1, 6), random.between(1, 6)};
    for (int i = 0; i < 100; ++i) {
      const HvPoint pos{axis.Centre().x + random.between(-120, 120), axis.Centre().y + random.between(-120, 120)};
      AxisModel model(axis, pos, tolerance);
      const std::uint32_t expected = model.handle();
      if (model.isAtABound()) continue;
      ASSERT_EQ(pickAt(axis, pos, tolerance), expected)
          << "mask " << axis.HandleMask() << " at " << pos.x << ' ' << pos.y;
      ++found[expected];
    }
  });
  if (cases < 50) return;
  for (const std::size_t handle : {0u, 1u, 2u, 3u, 4u, 8u, 16u, 32u, 64u})
    EXPECT_GT(found[handle], 0) << "handle " << handle << " was never met";
}

}  // namespace
}  // namespace vblur
