#include "overlay/HvT2DAxis.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "overlay/HvTGroup.h"
#include "overlay/HvTManager.h"
#include "tests/support/Random.h"

namespace vblur {
namespace {

constexpr std::uint32_t kEveryHandle = 127;

struct AxisParent : HvTGroup {
  AxisParent() : HvTGroup("parent") {}
  void ChildChanged(HvTObject* child) override {
    ++changes;
    HvTGroup::ChildChanged(child);
  }
  int changes = 0;
};

HvBox boxAt(HvT2DAxis& axis, HvPoint centre) {
  axis.SetCentre(centre.x, centre.y);
  HvBox box;
  axis.ComputeBox(box);
  return box;
}

HvBox boxOf(HvT2DAxis& axis) {
  HvBox box;
  axis.ComputeBox(box);
  return box;
}

void expectNear(const HvBox& have, const HvBox& want, float within = 1e-4f) {
  EXPECT_NEAR(have.minX, want.minX, within);
  EXPECT_NEAR(have.maxX, want.maxX, within);
  EXPECT_NEAR(have.minY, want.minY, within);
  EXPECT_NEAR(have.maxY, want.maxY, within);
}

bool hasStaleMatrices(const HvT2DAxis& axis) {
  return (axis.AxisFlags() & HvT2DAxis::kMatricesStale) != 0;
}

TEST(HvT2DAxis, BeginsAtTheOriginAsItIs) {
  const HvT2DAxis axis("ring", 37);
  EXPECT_STREQ(axis.Name(), "ring");
  EXPECT_EQ(axis.HandleMask(), 37u);
  EXPECT_EQ(axis.Active(), 0u);
  EXPECT_EQ(axis.AxisFlags(), 1u);
  EXPECT_EQ(axis.Centre(), (HvPoint{0, 0}));
  EXPECT_EQ(axis.AxisScale(), (HvPoint{1, 1}));
  EXPECT_EQ(axis.Scale(), 1.0f);
  EXPECT_EQ(axis.Rotation(), 0.0f);
  EXPECT_EQ(axis.Aspect(), 0.0f);
  EXPECT_EQ(axis.Flags(), 1u);
  EXPECT_EQ(axis.State(), 3u);
  EXPECT_EQ(axis.Target(), nullptr);
  EXPECT_EQ(axis.Box(), (HvBox{-37, 37, -37, 37}));
}

TEST(HvT2DAxis, HasABoxThatIsNotSettable) {
  HvT2DAxis axis("axis", HvT2DAxis::kTranslate);
  axis.SetOrigin({5, 6});
  axis.SetSize({7, 8});
  EXPECT_EQ(axis.Box(), (HvBox{-37, 37, -37, 37}));
}

TEST(HvT2DAxis, HandleMasksHaveTheirValues) {
  EXPECT_EQ(HvT2DAxis::kTranslateX, 1);
  EXPECT_EQ(HvT2DAxis::kTranslateY, 2);
  EXPECT_EQ(HvT2DAxis::kTranslate, 3);
  EXPECT_EQ(HvT2DAxis::kScale, 4);
  EXPECT_EQ(HvT2DAxis::kScaleX, 8);
  EXPECT_EQ(HvT2DAxis::kScaleY, 16);
  EXPECT_EQ(HvT2DAxis::kRotate, 32);
  EXPECT_EQ(HvT2DAxis::kAspect, 64);
}

TEST(HvT2DAxis, SharesTheAspectBetweenTheAxes) {
  HvT2DAxis axis("axis", kEveryHandle);
  const auto expectFactors = [&](float aspect, float x, float y) {
    axis.SetAspect(aspect);
    EXPECT_EQ(axis.XAspect(), x) << aspect;
    EXPECT_EQ(axis.YAspect(), y) << aspect;
  };
  expectFactors(0, 1, 1);
  expectFactors(0.25f, 1, 0.75f);
  expectFactors(1, 1, 0);
  expectFactors(5, 1, 0);
  expectFactors(-0.25f, 0.75f, 1);
  expectFactors(-1, 0, 1);
  expectFactors(-5, 0, 1);
  expectFactors(NAN, 1, 1);
}

TEST(HvT2DAxis, CentreMovesWhatCanBeMovedBothWays) {
  HvT2DAxis axis("axis", HvT2DAxis::kTranslate | HvT2DAxis::kRotate);
  EXPECT_EQ(axis.ToLocal({0, 0}), (HvPoint{0, 0}));
  axis.SetCentre(10, 20);
  EXPECT_EQ(axis.Centre(), (HvPoint{10, 20}));
  EXPECT_EQ(axis.Box(), (HvBox{-27, 47, -17, 57}));
  EXPECT_TRUE(hasStaleMatrices(axis));
  EXPECT_EQ(axis.ToLocal({10, 21}), (HvPoint{0, 1}));
}

TEST(HvT2DAxis, CentreStaysWithoutBothTranslations) {
  for (std::uint32_t mask = 0; mask <= kEveryHandle; ++mask) {
    HvT2DAxis axis("axis", mask);
    axis.ToLocal({0, 0});
    const HvBox before = axis.Box();
    axis.SetCentre(10, 20);
    const bool moves = (mask & 3) == 3;
    EXPECT_EQ(axis.Centre(), (moves ? HvPoint{10, 20} : HvPoint{0, 0})) << mask;
    EXPECT_EQ(hasStaleMatrices(axis), moves) << mask;
    EXPECT_EQ(axis.Box() == before, !moves) << mask;
  }
}

TEST(HvT2DAxis, CentreMovesAnythingThatBehavesAsIfAll) {
  HvT2DAxis axis("axis", 0);
  axis.SetAxisFlags(HvT2DAxis::kAsIfAll);
  axis.SetCentre(10, 20);
  EXPECT_EQ(axis.Centre(), (HvPoint{10, 20}));
}

TEST(HvT2DAxis, AnUnchangedCentreNotifiesNobody) {
  AxisParent parent;
  HvT2DAxis axis("axis", HvT2DAxis::kTranslate);
  axis.SetParent(&parent);
  axis.SetCentre(10, 20);
  axis.ToLocal({0, 0});
  const int before = parent.changes;
  axis.SetCentre(10, 20);
  EXPECT_EQ(parent.changes, before);
  EXPECT_FALSE(hasStaleMatrices(axis));
  axis.SetCentre(10, 21);
  EXPECT_EQ(parent.changes, before + 1);
  EXPECT_TRUE(hasStaleMatrices(axis));
}

TEST(HvT2DAxis, BoxHoldsTheHandlesOfEachMask) {
  const auto boxWith = [](std::uint32_t mask) {
    HvT2DAxis axis("axis", mask);
    return axis.Box();
  };
  EXPECT_EQ(boxWith(HvT2DAxis::kTranslateX), (HvBox{-37, 37, -3, 3}));
  EXPECT_EQ(boxWith(HvT2DAxis::kTranslateY), (HvBox{-3, 3, -37, 37}));
  EXPECT_EQ(boxWith(HvT2DAxis::kTranslate), (HvBox{-37, 37, -37, 37}));
  EXPECT_EQ(boxWith(HvT2DAxis::kScale), (HvBox{-37, 37, -37, 37}));
  EXPECT_EQ(boxWith(HvT2DAxis::kScaleX), (HvBox{-37, 37, -37, 37}));
  EXPECT_EQ(boxWith(HvT2DAxis::kScaleY), (HvBox{-37, 37, -37, 37}));
  EXPECT_EQ(boxWith(HvT2DAxis::kRotate), (HvBox{-32, 32, -32, 32}));
  EXPECT_EQ(boxWith(HvT2DAxis::kTranslateX | HvT2DAxis::kRotate), (HvBox{-37, 37, -32, 32}));
  EXPECT_EQ(boxWith(HvT2DAxis::kAspect), (HvBox{40, 40, 40, 40}));
  EXPECT_EQ(boxWith(HvT2DAxis::kAspect | HvT2DAxis::kTranslateX), (HvBox{-37, 40, -3, 40}));
  EXPECT_EQ(boxWith(0), (HvBox{0, 0, 0, 0}));
  const float dot = 37.0f + 10.0f / std::numbers::sqrt2_v<float>;
  expectNear(boxWith(HvT2DAxis::kAspect | HvT2DAxis::kScaleY), {-37, dot + 3, -37, dot + 3});
}

TEST(HvT2DAxis, BoxLiesAboutTheCentre) {
  HvT2DAxis axis("axis", HvT2DAxis::kTranslate);
  EXPECT_EQ(boxAt(axis, {10, 20}), (HvBox{-27, 47, -17, 57}));
  EXPECT_EQ(axis.Box(), (HvBox{-27, 47, -17, 57}));
}

TEST(HvT2DAxis, BoxIsAPointWithoutHandlesThatFollowsTheHandleScale) {
  HvT2DAxis axis("axis", 0);
  axis.SetAxisFlags(HvT2DAxis::kAsIfAll);
  axis.SetCentre(10, 20);
  axis.SetAxisFlags(0);
  EXPECT_EQ(axis.Box(), (HvBox{10, 10, 20, 20}));
  axis.SetHandleScale(2);
  EXPECT_EQ(boxOf(axis), (HvBox{20, 20, 40, 40}));
  EXPECT_EQ(axis.Box(), (HvBox{20, 20, 40, 40}));
}

TEST(HvT2DAxis, BoxIsThatOfAllButTheAspectWhereAsked) {
  HvT2DAxis axis("axis", HvT2DAxis::kAspect);
  axis.SetAxisFlags(HvT2DAxis::kAsIfAll);
  EXPECT_EQ(axis.Box(), (HvBox{-37, 37, -37, 37}));
  axis.SetScale(2);
  EXPECT_EQ(axis.Box(), (HvBox{-74, 74, -74, 74}));
}

TEST(HvT2DAxis, BoxFollowsTheHandleScaleButForTheWidthOfArrowsAndTheMarginOfTheDot) {
  const auto boxWith = [](std::uint32_t mask) {
    HvT2DAxis axis("axis", mask);
    axis.SetHandleScale(2);
    return axis.Box();
  };
  EXPECT_EQ(boxWith(HvT2DAxis::kTranslateX), (HvBox{-74, 74, -3, 3}));
  EXPECT_EQ(boxWith(HvT2DAxis::kTranslateY), (HvBox{-3, 3, -74, 74}));
  EXPECT_EQ(boxWith(HvT2DAxis::kRotate), (HvBox{-64, 64, -64, 64}));
  EXPECT_EQ(boxWith(HvT2DAxis::kScale), (HvBox{-74, 74, -74, 74}));
  EXPECT_EQ(boxWith(HvT2DAxis::kAspect), (HvBox{77, 77, 77, 77}));
}

TEST(HvT2DAxis, BoxTakesTheScalesAndNotTheAspect) {
  HvT2DAxis axis("axis", HvT2DAxis::kScaleX);
  axis.SetScale(2);
  axis.SetAxisScale(0.5f, -3);
  axis.SetAspect(-0.5f);
  EXPECT_EQ(axis.Box(), (HvBox{-37, 37, -222, 222}));
}

TEST(HvT2DAxis, BoxRotatesWithTheScaleBoxAndTheDotOnly) {
  HvT2DAxis scale("axis", HvT2DAxis::kScale);
  scale.SetAxisScale(2, 1);
  scale.SetRotation(90);
  expectNear(scale.Box(), {-37, 37, -74, 74});
  scale.SetAxisScale(1, 1);
  scale.SetRotation(45);
  const float diagonal = 37.0f * std::numbers::sqrt2_v<float>;
  expectNear(scale.Box(), {-diagonal, diagonal, -diagonal, diagonal});

  HvT2DAxis dot("axis", HvT2DAxis::kAspect);
  dot.SetRotation(90);
  expectNear(dot.Box(), {-34, -34, 40, 40});

  HvT2DAxis fixed("axis", HvT2DAxis::kTranslateX | HvT2DAxis::kRotate);
  fixed.SetRotation(45);
  EXPECT_EQ(fixed.Box(), (HvBox{-37, 37, -32, 32}));
}

TEST(HvT2DAxis, BoxIsReportedToTheParent) {
  AxisParent parent;
  HvT2DAxis axis("axis", kEveryHandle);
  axis.SetParent(&parent);
  const auto expectChanges = [&](const char* what, auto change) {
    const int before = parent.changes;
    change();
    EXPECT_EQ(parent.changes, before + 1) << what;
    EXPECT_EQ(parent.Box(), axis.Box()) << what;
  };
  expectChanges("box", [&] { axis.UpdateBox(); });
  expectChanges("handle scale", [&] { axis.SetHandleScale(2); });
  expectChanges("centre", [&] { axis.SetCentre(5, 5); });
  expectChanges("scale", [&] { axis.SetScale(3); });
  expectChanges("axis scale", [&] { axis.SetAxisScale(1, 2); });
  expectChanges("rotation", [&] { axis.SetRotation(30); });
  expectChanges("aspect", [&] { axis.SetAspect(0.5f); });
}

TEST(HvT2DAxis, AspectHandleLiesBeyondTheCornerOfTheBox) {
  HvT2DAxis axis("axis", HvT2DAxis::kAspect | HvT2DAxis::kScale);
  const HvPoint pos = axis.AspectHandlePos();
  EXPECT_EQ(pos.x, pos.y);
  EXPECT_NEAR(std::hypot(pos.x, pos.y), std::hypot(37, 37) + 10, 1e-4);
  axis.SetHandleScale(2);
  EXPECT_NEAR(axis.AspectHandlePos().x, 74 + 20 / std::numbers::sqrt2, 1e-4);
}

TEST(HvT2DAxis, AspectHandleFollowsScalesAndAspect) {
  for (const std::uint32_t any : {HvT2DAxis::kScale, HvT2DAxis::kScaleX, HvT2DAxis::kScaleY}) {
    HvT2DAxis axis("axis", HvT2DAxis::kAspect | any);
    axis.SetAxisScale(3, 8);
    axis.SetAspect(0.5f);
    // The corner is (111, 148), of length 185.
    EXPECT_NEAR(axis.AspectHandlePos().x, 117, 1e-4) << any;
    EXPECT_NEAR(axis.AspectHandlePos().y, 156, 1e-4) << any;
    axis.SetScale(-1);
    EXPECT_NEAR(axis.AspectHandlePos().x, -117, 1e-4) << any;
    EXPECT_NEAR(axis.AspectHandlePos().y, -156, 1e-4) << any;
  }
}

TEST(HvT2DAxis, AspectHandleIsTheCentreOfACollapsedBox) {
  HvT2DAxis axis("axis", HvT2DAxis::kAspect | HvT2DAxis::kScale);
  axis.SetScale(0);
  EXPECT_EQ(axis.AspectHandlePos(), (HvPoint{0, 0}));
}

TEST(HvT2DAxis, AspectHandleLiesAtTheArrowsWithoutABox) {
  HvT2DAxis axis("axis", HvT2DAxis::kAspect | HvT2DAxis::kTranslate | HvT2DAxis::kRotate);
  axis.SetScale(5);
  EXPECT_EQ(axis.AspectHandlePos(), (HvPoint{37, 37}));
  axis.SetAspect(0.25f);
  EXPECT_EQ(axis.AspectHandlePos(), (HvPoint{37, 27.75f}));
  axis.SetAspect(-0.25f);
  EXPECT_EQ(axis.AspectHandlePos(), (HvPoint{27.75f, 37}));
}

TEST(HvT2DAxis, SpaceIsScaledRotatedAndTranslated) {
  HvT2DAxis axis("axis", HvT2DAxis::kTranslate);
  axis.SetScale(2);
  axis.SetAxisScale(1, 0.5f);
  axis.SetCentre(10, 20);
  EXPECT_EQ(axis.ToLocal({16, 24}), (HvPoint{3, 4}));
  axis.SetRotation(90);
  const HvPoint turned = axis.ToLocal({9, 24});
  EXPECT_NEAR(turned.x, 2, 1e-5);
  EXPECT_NEAR(turned.y, 1, 1e-5);
  axis.SetRotation(0);
  axis.SetAspect(0.5f);
  EXPECT_EQ(axis.ToLocal({16, 24}), (HvPoint{3, 8}));
  axis.SetAspect(-0.5f);
  EXPECT_EQ(axis.ToLocal({16, 24}), (HvPoint{6, 4}));
}

TEST(HvT2DAxis, SpaceIsTheParentsWithAScaleOfNothing) {
  HvT2DAxis axis("axis", HvT2DAxis::kTranslate);
  axis.SetCentre(10, 20);
  axis.SetScale(0);
  EXPECT_EQ(axis.ToLocal({3, 4}), (HvPoint{3, 4}));
}

TEST(HvT2DAxis, SpaceGivesBackEveryPoint) {
  test::forRandomCases(2000, [](test::Random& random) {
    HvT2DAxis axis("axis", HvT2DAxis::kTranslate);
    const float scale = random.between(0.5f, 3) * random.oneOf({1.0f, -1.0f});
    const HvPoint axisScale{random.between(0.5f, 3) * random.oneOf({1.0f, -1.0f}), random.between(0.5f, 3)};
    const float degrees = random.between(-720, 720);
    const float aspect = random.between(-0.75f, 0.75f);
    const HvPoint centre{random.between(-500, 500), random.between(-500, 500)};
    axis.SetScale(scale);
    axis.SetAxisScale(axisScale.x, axisScale.y);
    axis.SetRotation(degrees);
    axis.SetAspect(aspect);
    axis.SetCentre(centre.x, centre.y);
    const HvPoint own{random.between(-100, 100), random.between(-100, 100)};
    const double x = own.x * scale * axisScale.x * (aspect < 0 ? 1 + aspect : 1);
    const double y = own.y * scale * axisScale.y * (aspect > 0 ? 1 - aspect : 1);
    const double angle = degrees * std::numbers::pi / 180;
    const HvPoint mapped{static_cast<float>(x * std::cos(angle) - y * std::sin(angle) + centre.x),
                         static_cast<float>(x * std::sin(angle) + y * std::cos(angle) + centre.y)};
    const HvPoint back = axis.ToLocal(mapped);
    EXPECT_NEAR(back.x, own.x, 0.02);
    EXPECT_NEAR(back.y, own.y, 0.02);
  });
}

TEST(HvT2DAxis, ActiveHandleWantsPaintingWhereItIsNews) {
  HvTManager manager;
  HvT2DAxis axis("axis", kEveryHandle);
  axis.SetVisibility(HvTObject::kPickable);
  manager.AddObject(&axis);
  const auto wantsRepaintAfter = [&](std::uint32_t handle) {
    manager.Draw();
    axis.SetActiveHandle(handle);
    EXPECT_EQ(axis.Target(), &axis);
    EXPECT_EQ(axis.Active(), handle);
    return manager.WantsRepaint();
  };
  EXPECT_TRUE(wantsRepaintAfter(HvT2DAxis::kRotate));
  EXPECT_FALSE(wantsRepaintAfter(HvT2DAxis::kRotate));
  EXPECT_TRUE(wantsRepaintAfter(HvT2DAxis::kScale));
  axis.ClearTarget();
  EXPECT_TRUE(wantsRepaintAfter(HvT2DAxis::kScale));
  axis.Leave();
  EXPECT_EQ(axis.Target(), &axis);
  EXPECT_TRUE(wantsRepaintAfter(HvT2DAxis::kScale));
}

TEST(HvT2DAxis, LeavesNothingBehind) {
  HvTManager manager;
  {
    HvT2DAxis axis("axis", kEveryHandle);
    manager.AddObject(&axis);
    manager.PostMessage(HvMessage::OfPosition(kPenDown, {37, 0}));
    EXPECT_EQ(manager.Hover(), &axis);
  }
  EXPECT_EQ(manager.Hover(), nullptr);
  EXPECT_EQ(manager.Hit(), nullptr);
  EXPECT_EQ(manager.Children().First(), nullptr);
  manager.PostMessage(HvMessage::OfPosition(kPenMoved, {38, 0}));
  manager.PostMessage(HvMessage::OfPosition(kPenUp, {38, 0}));

  AxisParent parent;
  {
    HvT2DAxis axis("axis", kEveryHandle);
    axis.SetParent(&parent);
  }
  EXPECT_EQ(parent.Children().First(), nullptr);
}

}  // namespace
}  // namespace vblur
