#include "overlay/HvT2DAxisGroup.h"

#include <memory>
#include <numbers>
#include <stdexcept>

#include <gtest/gtest.h>

#include "overlay/HvTGroup.h"
#include "overlay/HvTManager.h"
#include "tests/overlay/Hearer.h"
#include "tests/overlay/Probe.h"

namespace vblur {
namespace {

constexpr HvPoint kPickReach{2, 2};

int stackDepth() {
  return OverlayMatrixStack::Get().Depth();
}

class HvT2DAxisGroupOfProbes : public ::testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(stackDepth(), 0); }

  test::CallLog log;
  // Declared before the group, which they must outlive.
  test::Probe a{log, "a", test::square(10, 20, 5)};
  test::Probe b{log, "b", test::square(-30, 40, 10)};
  HvT2DAxisGroup group{"group", HvT2DAxis::kTranslate};
};

TEST_F(HvT2DAxisGroupOfProbes, BeginsAsAnAxisWithoutChildren) {
  EXPECT_EQ(group.GroupFlags(), 1u);
  EXPECT_TRUE(group.ShowsOwnAxis());
  EXPECT_EQ(group.ChildBox(), (HvBox{0, 0, 0, 0}));
  EXPECT_TRUE(group.HasBox());
  EXPECT_EQ(group.Box(), (HvBox{-37, 37, -37, 37}));
  EXPECT_EQ(group.HandleMask(), 3u);
  group.ShowOwnAxis(false);
  EXPECT_EQ(group.GroupFlags(), 0u);
  group.ShowOwnAxis(true);
  EXPECT_EQ(group.GroupFlags(), 1u);
}

TEST_F(HvT2DAxisGroupOfProbes, LeavesItsTransformWhenASecondChildThrows) {
  struct Refusing : test::Probe {
    using Probe::Probe;
    void Draw() override { throw std::runtime_error("refused"); }
  };
  Refusing refusing(log, "r", test::square(0, 0, 1));
  group.ShowOwnAxis(false);
  group.AddIntoSecond(true);
  refusing.SetParent(&group);
  EXPECT_THROW(group.Draw(), std::runtime_error);
  EXPECT_EQ(stackDepth(), 0);
  refusing.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, AddsAChildOnce) {
  HvTManager manager;
  manager.AddObject(&group);
  EXPECT_EQ(group.AddChild(nullptr), 0);
  EXPECT_EQ(group.AddChild(&a), 1);
  EXPECT_EQ(group.AddChild(&a), 0);
  EXPECT_EQ(a.Parent(), nullptr) << "only SetParent sets it";
  EXPECT_EQ(a.Manager(), &manager);
  EXPECT_TRUE(group.Children().Children().Contains(&a));
  EXPECT_EQ(group.SecondChildren().Children().First(), nullptr);
  EXPECT_EQ(group.Children().BoxState(), 1);
}

TEST_F(HvT2DAxisGroupOfProbes, TakesTheBoxOfTheLastChildUntilItIsNotified) {
  group.AddChild(&a);
  EXPECT_EQ(group.ChildBox(), (HvBox{10, 15, 20, 25}));
  EXPECT_EQ(group.Box(), (HvBox{-37, 37, -37, 37}));
  group.AddChild(&b);
  EXPECT_EQ(group.ChildBox(), (HvBox{-30, -20, 40, 50}));
  EXPECT_EQ(group.Box(), (HvBox{-37, 37, -37, 50}));
  group.ChildChanged(nullptr);
  EXPECT_EQ(group.ChildBox(), (HvBox{-30, -20, 40, 50}));
  group.ChildChanged(&b);
  EXPECT_EQ(group.ChildBox(), (HvBox{-30, 15, 0, 50}));
}

TEST_F(HvT2DAxisGroupOfProbes, HoldsAllAttachedChildrenAndItsOrigin) {
  a.SetParent(&group);
  EXPECT_EQ(a.Parent(), &group);
  EXPECT_EQ(group.ChildBox(), (HvBox{0, 15, 0, 25}));
  b.SetParent(&group);
  EXPECT_EQ(group.ChildBox(), (HvBox{-30, 15, 0, 50}));
  b.SetOrigin({-300, 400});
  EXPECT_EQ(group.ChildBox(), (HvBox{-300, 15, 0, 410}));
  EXPECT_EQ(group.Box(), (HvBox{-300, 37, -37, 410}));
}

TEST_F(HvT2DAxisGroupOfProbes, LeavesItsOriginOutWithSecondChildren) {
  group.AddIntoSecond(true);
  b.SetParent(&group);
  EXPECT_TRUE(group.SecondChildren().Children().Contains(&b));
  EXPECT_EQ(group.Children().Children().First(), nullptr);
  EXPECT_EQ(group.ChildBox(), (HvBox{-30, -20, 40, 50}));
  group.AddIntoSecond(false);
  a.SetParent(&group);
  EXPECT_EQ(group.ChildBox(), (HvBox{-30, 15, 20, 50}));
  EXPECT_TRUE(group.HasBox());
}

TEST_F(HvT2DAxisGroupOfProbes, HasNoBoxWhileAChildHasNone) {
  a.SetParent(&group);
  b.dropBox();
  EXPECT_EQ(group.AddChild(&b), 1);
  EXPECT_FALSE(group.HasBox());
  EXPECT_EQ(group.ChildBox(), (HvBox{0, 15, 0, 25})) << "not notified yet";
  group.ChildChanged(&b);
  EXPECT_EQ(group.ChildBox(), HvBox());
  EXPECT_FALSE(group.HasBox());
  EXPECT_EQ(group.Box(), (HvBox{-37, 37, -37, 37}));
  group.RemoveChild(&b);
  EXPECT_TRUE(group.HasBox());
  EXPECT_EQ(group.ChildBox(), (HvBox{0, 15, 0, 25}));
}

TEST_F(HvT2DAxisGroupOfProbes, HasNoBoxWhileASecondChildHasNone) {
  a.SetParent(&group);
  b.dropBox();
  group.AddIntoSecond(true);
  b.SetParent(&group);
  EXPECT_FALSE(group.HasBox());
  EXPECT_EQ(group.ChildBox(), HvBox());
  // By the last child's container alone.
  test::Probe c(log, "c", test::square(50, 50, 1));
  group.AddIntoSecond(false);
  group.AddChild(&c);
  EXPECT_TRUE(group.HasBox());
  EXPECT_EQ(group.ChildBox(), (HvBox{50, 51, 50, 51}));
  group.RemoveChild(&c);
  EXPECT_FALSE(group.HasBox());
}

TEST_F(HvT2DAxisGroupOfProbes, BoxHoldsTheTransformedChildren) {
  a.SetParent(&group);
  group.SetCentre(100, 200);
  EXPECT_EQ(group.Box(), (HvBox{63, 137, 163, 237}));
  group.SetScale(4);
  EXPECT_EQ(group.Box(), (HvBox{63, 160, 163, 300}));
  group.SetAxisScale(1, -2);
  EXPECT_EQ(group.Box(), (HvBox{63, 160, 0, 237}));
  group.SetAspect(0.5f);
  EXPECT_EQ(group.Box(), (HvBox{63, 160, 100, 237}));
  group.SetRotation(180);
  EXPECT_NEAR(group.Box().minX, 40, 1e-3);
  EXPECT_NEAR(group.Box().maxX, 137, 1e-3);
  EXPECT_NEAR(group.Box().minY, 163, 1e-3);
  EXPECT_NEAR(group.Box().maxY, 300, 1e-3);
}

TEST_F(HvT2DAxisGroupOfProbes, BoxIncludesAllCornersWhenRotated) {
  HvT2DAxisGroup bare("bare", 0);
  test::Probe wide(log, "wide", {-100, 100, -10, 10});
  wide.SetParent(&bare);
  bare.SetRotation(45);
  const float reach = 110 / std::numbers::sqrt2_v<float>;
  EXPECT_NEAR(bare.Box().minX, -reach, 1e-3);
  EXPECT_NEAR(bare.Box().maxX, reach, 1e-3);
  EXPECT_NEAR(bare.Box().minY, -reach, 1e-3);
  EXPECT_NEAR(bare.Box().maxY, reach, 1e-3);
  wide.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, BoxIsTheAxisAloneWithoutChildren) {
  HvT2DAxisGroup dot("dot", HvT2DAxis::kAspect);
  EXPECT_EQ(dot.Box(), (HvBox{40, 40, 40, 40}));
  a.SetParent(&dot);
  EXPECT_EQ(dot.Box(), (HvBox{0, 40, 0, 40}));
  a.Detach();
  EXPECT_EQ(dot.Box(), (HvBox{40, 40, 40, 40}));
}

TEST_F(HvT2DAxisGroupOfProbes, BoxIsOneMoveBehindADrag) {
  HvT2DAxisGroup bare("bare", HvT2DAxis::kTranslate);
  test::Probe far(log, "far", test::square(100, 100, 10));
  far.SetParent(&bare);
  EXPECT_EQ(bare.Box(), (HvBox{-37, 110, -37, 110}));
  bare.Pick({0, 0}, kPickReach);
  bare.Press({0, 0});
  bare.Drag({5, 7});
  EXPECT_EQ(bare.Box(), (HvBox{-32, 110, -30, 110}));
  bare.Drag({5, 7});
  EXPECT_EQ(bare.Box(), (HvBox{-32, 115, -30, 117}));
  far.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, PicksChildrenBeforeItsOwnHandles) {
  test::Probe c(log, "c", test::square(-5, -5, 10));
  c.SetParent(&group);
  EXPECT_EQ(group.Pick({0, 0}, kPickReach).Object(), &c);
  EXPECT_EQ(group.Target(), &c);
  EXPECT_EQ(group.Children().Hit(), &c);
  EXPECT_EQ(group.Active(), 0u);
  EXPECT_EQ(group.Pick({20, 0}, kPickReach).Object(), &group);
  EXPECT_EQ(group.Target(), &group);
  EXPECT_EQ(group.Children().Hit(), nullptr);
  EXPECT_EQ(c.Target(), nullptr);
  EXPECT_EQ(group.Active(), 1u);
  EXPECT_FALSE(group.Pick({300, 0}, kPickReach).EndsSearch());
  EXPECT_EQ(group.Target(), nullptr);
  EXPECT_EQ(group.Active(), 0u);
  c.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, PicksSecondChildrenAfterTheFirst) {
  test::Probe first(log, "first", test::square(0, 0, 10));
  test::Probe second(log, "second", test::square(5, 5, 10));
  first.SetParent(&group);
  group.AddIntoSecond(true);
  second.SetParent(&group);
  EXPECT_EQ(group.Pick({7, 7}, kPickReach).Object(), &first);
  EXPECT_EQ(group.Target(), &first);
  EXPECT_EQ(group.Pick({12, 12}, kPickReach).Object(), &second);
  EXPECT_EQ(group.Target(), &second);
  EXPECT_EQ(group.Children().Hit(), nullptr);
  EXPECT_EQ(group.SecondChildren().Hit(), &second);
  first.Detach();
  second.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, WithoutItsAxisPicksChildrenAlone) {
  a.SetParent(&group);
  group.ShowOwnAxis(false);
  EXPECT_FALSE(group.Pick({0, 0}, kPickReach).EndsSearch());
  EXPECT_EQ(group.Target(), nullptr);
  EXPECT_EQ(group.Pick({12, 22}, kPickReach).Object(), &a);
  EXPECT_EQ(group.Target(), &a);
  EXPECT_FALSE(group.Pick({0, 0}, kPickReach).EndsSearch());
  EXPECT_EQ(group.Target(), nullptr);
}

TEST_F(HvT2DAxisGroupOfProbes, AnswersAsItsSecondChildrenDoWhereNothingIsHit) {
  HvTGroup solid("solid");
  a.SetParent(&solid);
  group.AddIntoSecond(true);
  solid.SetParent(&group);
  b.SetOrigin({30, 20});
  b.SetParent(&solid);
  group.ShowOwnAxis(false);
  // Between a and b.
  EXPECT_TRUE(group.Pick({22, 22}, kPickReach).IsSwallowed());
  EXPECT_EQ(group.Target(), nullptr);
  group.ShowOwnAxis(true);
  EXPECT_FALSE(group.Pick({22, 22}, kPickReach).EndsSearch()) << "the axis decides";
  EXPECT_EQ(group.Pick({22, 0}, {2, 30}).Object(), &group);
  solid.Detach();
  a.Detach();
  b.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, SearchesTheSecondWhereTheFirstSwallow) {
  HvTGroup solid("solid");
  a.SetParent(&solid);
  b.SetParent(&solid);
  solid.SetParent(&group);
  group.ShowOwnAxis(false);
  EXPECT_FALSE(group.Pick({0, 30}, kPickReach).EndsSearch());
  test::Probe c(log, "c", test::square(-5, 25, 10));
  group.AddIntoSecond(true);
  c.SetParent(&group);
  EXPECT_EQ(group.Pick({0, 30}, kPickReach).Object(), &c);
  c.Detach();
  solid.Detach();
  a.Detach();
  b.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, PicksInItsOwnSpaceAndUnits) {
  a.SetParent(&group);
  group.SetCentre(100, 200);
  group.SetScale(2);
  group.SetAxisScale(1, -4);
  group.SetAspect(0.5f);
  // x by 2, y by -4.
  EXPECT_EQ(group.Pick({124, 112}, {6, 8}).Object(), &a);
  EXPECT_EQ(a.pickedAt, (HvPoint{12, 22}));
  EXPECT_EQ(a.pickedWith, (HvPoint{3, 2}));
  EXPECT_EQ(a.picks, 1);
  // 10 - 3 is where a begins for the tolerance.
  group.Pick({112, 112}, {6, 8});
  EXPECT_EQ(a.picks, 1);
  group.Pick({114, 112}, {6, 8});
  EXPECT_EQ(a.picks, 2);
}

TEST_F(HvT2DAxisGroupOfProbes, LeadsThePenIntoItsOwnSpace) {
  a.SetParent(&group);
  group.SetCentre(100, 200);
  group.SetScale(2);
  HvTManager manager;
  manager.EnableTips(false);
  manager.AddObject(&group);
  manager.PostMessage(HvMessage::OfPosition(kPenDown, {124, 246}));
  EXPECT_EQ(log.take(), "Press a 12 23; ");
  manager.PostMessage(HvMessage::OfPosition(kPenMoved, {140, 280}));
  EXPECT_EQ(log.take(), "Drag a 20 40; ");
  manager.PostMessage(HvMessage::OfPosition(kPenUp, {122, 242}));
  EXPECT_EQ(log.take(), "Release a; Enter a 11 21; ");
}

TEST_F(HvT2DAxisGroupOfProbes, DragsItselfThroughTheManager) {
  a.SetParent(&group);
  HvTManager manager;
  manager.AddObject(&group);
  manager.PostMessage(HvMessage::OfPosition(kPenDown, {1, 1}));
  EXPECT_TRUE(group.IsPressed());
  manager.PostMessage(HvMessage::OfPosition(kPenMoved, {51, 61}));
  EXPECT_EQ(group.Centre(), (HvPoint{50, 60}));
  manager.PostMessage(HvMessage::OfPosition(kPenUp, {51, 61}));
  EXPECT_TRUE(group.IsHovered());
  EXPECT_EQ(group.Active(), 3u);
  manager.PostMessage(HvMessage::OfPosition(kPenMoved, {62, 82}));
  EXPECT_EQ(manager.Hover(), &a);
}

TEST_F(HvT2DAxisGroupOfProbes, StacksItsTransformAroundChildren) {
  HvT2DAxisGroup inner("inner", HvT2DAxis::kTranslate);
  a.SetParent(&inner);
  inner.SetParent(&group);
  group.SetCentre(100, 200);
  group.SetScale(2);
  inner.SetCentre(1, 2);
  inner.SetScale(4);
  HvTManager manager;
  manager.AddObject(&group);
  int asked = 0;
  const auto check = [&] {
    ++asked;
    EXPECT_EQ(stackDepth(), 2);
    // 12, 22 by the inner is 49, 90, and by the outer 198, 380.
    EXPECT_EQ(OverlayMatrixStack::Get().Top().Map({12, 22}), (HvPoint{198, 380}));
  };
  a.whilePicked = check;
  a.whileDragged = check;
  manager.PostMessage(HvMessage::OfPosition(kPenDown, {198, 380}));
  manager.PostMessage(HvMessage::OfPosition(kPenMoved, {199, 380}));
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(stackDepth(), 0);
  EXPECT_EQ(a.pickedAt, (HvPoint{12, 22}));
  inner.Detach();
  a.Detach();
}

TEST_F(HvT2DAxisGroupOfProbes, PushesAndPopsOneLevel) {
  group.SetCentre(5, 6);
  group.PushTransform();
  EXPECT_EQ(stackDepth(), 1);
  EXPECT_EQ(OverlayMatrixStack::Get().Top().Map({1, 1}), (HvPoint{6, 7}));
  group.PopTransform();
  EXPECT_EQ(stackDepth(), 0);
}

TEST_F(HvT2DAxisGroupOfProbes, PutsTheTargetIntoTheContainerThatListsIt) {
  a.SetParent(&group);
  group.AddIntoSecond(true);
  b.SetParent(&group);
  group.SetTarget(&a);
  EXPECT_EQ(group.Target(), &a);
  EXPECT_EQ(group.Children().Hit(), &a);
  EXPECT_EQ(group.SecondChildren().Hit(), nullptr);
  group.Children().SetHit(nullptr);
  group.SetTarget(&b);
  EXPECT_EQ(group.Target(), &b);
  EXPECT_EQ(group.Children().Hit(), nullptr);
  EXPECT_EQ(group.SecondChildren().Hit(), &b);
  group.SetTarget(nullptr);
  EXPECT_EQ(group.Target(), &group);
  EXPECT_EQ(group.Children().Hit(), nullptr);
  EXPECT_EQ(group.SecondChildren().Hit(), &group);
}

TEST_F(HvT2DAxisGroupOfProbes, HandsTheManagerToAllChildren) {
  a.SetParent(&group);
  group.AddIntoSecond(true);
  b.SetParent(&group);
  HvTManager manager;
  manager.AddObject(&group);
  EXPECT_EQ(group.Manager(), &manager);
  EXPECT_EQ(a.Manager(), &manager);
  EXPECT_EQ(b.Manager(), &manager);
  group.Detach();
  EXPECT_EQ(group.Manager(), nullptr);
  EXPECT_EQ(a.Manager(), nullptr);
  EXPECT_EQ(b.Manager(), nullptr);
}

TEST_F(HvT2DAxisGroupOfProbes, RemovesFromEitherContainer) {
  a.SetParent(&group);
  group.AddIntoSecond(true);
  b.SetParent(&group);
  EXPECT_EQ(group.RemoveChild(&b), 1);
  EXPECT_EQ(b.Parent(), nullptr);
  EXPECT_EQ(group.ChildBox(), (HvBox{0, 15, 0, 25}));
  EXPECT_EQ(group.RemoveChild(&b), 0);
  EXPECT_EQ(group.RemoveChild(&a), 1);
  EXPECT_EQ(a.Parent(), nullptr);
  EXPECT_EQ(group.ChildBox(), (HvBox{0, 0, 0, 0}));
  EXPECT_EQ(group.RemoveChild(nullptr), 0);
  EXPECT_EQ(group.Box(), (HvBox{-37, 37, -37, 37}));
}

TEST_F(HvT2DAxisGroupOfProbes, ForgetsAChildThatIsInBothContainers) {
  a.SetParent(&group);
  group.AddIntoSecond(true);
  a.SetParent(&group);
  EXPECT_TRUE(group.Children().Children().Contains(&a));
  EXPECT_TRUE(group.SecondChildren().Children().Contains(&a));
  a.Detach();
  EXPECT_EQ(group.Children().Children().First(), nullptr);
  EXPECT_EQ(group.SecondChildren().Children().First(), nullptr);
}

TEST_F(HvT2DAxisGroupOfProbes, LeavesNoPointerToADestroyedChild) {
  HvTManager manager;
  manager.EnableTips(false);
  for (const bool second : {false, true}) {
    auto child = std::make_unique<HvT2DAxis>("child", HvT2DAxis::kRotate);
    group.AddIntoSecond(second);
    child->SetParent(&group);
    manager.AddObject(&group);
    manager.PostMessage(HvMessage::OfPosition(kPenDown, {32, 0}));
    ASSERT_EQ(manager.Hover(), child.get());
    ASSERT_EQ(group.Target(), child.get());
    child.reset();
    EXPECT_EQ(group.Target(), nullptr);
    EXPECT_EQ(group.Children().Hit(), nullptr);
    EXPECT_EQ(group.SecondChildren().Hit(), nullptr);
    EXPECT_EQ(manager.Hover(), nullptr);
    EXPECT_EQ(manager.Hit(), &group);
    manager.PostMessage(HvMessage::OfPosition(kPenMoved, {33, 0}));
    EXPECT_EQ(manager.LeaveHit(), 0);
    EXPECT_EQ(manager.PressHit({1, 1}), 0);
    manager.PostMessage(HvMessage::OfPosition(kPenUp, {300, 0}));
    EXPECT_EQ(stackDepth(), 0);
  }
}

TEST_F(HvT2DAxisGroupOfProbes, IsDestroyedBeforeOrAfterItsChildren) {
  HvTManager manager;
  for (const bool groupFirst : {false, true}) {
    auto outer = std::make_unique<HvT2DAxisGroup>("outer", HvT2DAxis::kTranslate);
    auto inner = std::make_unique<HvT2DAxisGroup>("inner", HvT2DAxis::kTranslate);
    auto leaf = std::make_unique<HvT2DAxis>("leaf", HvT2DAxis::kTranslate);
    manager.AddObject(outer.get());
    inner->SetParent(outer.get());
    outer->AddIntoSecond(true);
    leaf->SetParent(inner.get());
    EXPECT_EQ(leaf->Manager(), &manager);
    if (groupFirst) {
      outer.reset();
      EXPECT_EQ(inner->Parent(), nullptr);
      EXPECT_EQ(leaf->Manager(), nullptr);
      inner.reset();
      EXPECT_EQ(leaf->Parent(), nullptr);
      leaf.reset();
    } else {
      leaf.reset();
      EXPECT_EQ(inner->Children().Children().First(), nullptr);
      inner.reset();
      EXPECT_EQ(outer->Children().Children().First(), nullptr);
      outer.reset();
    }
    EXPECT_EQ(manager.Children().First(), nullptr);
  }
}

TEST_F(HvT2DAxisGroupOfProbes, DestroysTheChildrenThatItOwns) {
  auto owner = std::make_unique<HvT2DAxisGroup>("owner", HvT2DAxis::kTranslate);
  owner->Children().OwnChildren(true);
  auto* const child = new HvT2DAxis("child", HvT2DAxis::kTranslate);
  test::Hearer hearer(*child);
  EXPECT_NE(hearer.Senders().First(), nullptr);
  child->SetParent(owner.get());
  owner.reset();
  EXPECT_EQ(hearer.Senders().First(), nullptr) << "it is gone";
}

}  // namespace
}  // namespace vblur
