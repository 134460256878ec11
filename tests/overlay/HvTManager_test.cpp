#include "overlay/HvTManager.h"

#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "overlay/HvTGroup.h"
#include "tests/overlay/Probe.h"

namespace vblur {
namespace {

using test::CallLog;
using test::Probe;
using test::square;

// Two overlapping widgets, b above a.
class HvTManagerOfProbes : public ::testing::Test {
 protected:
  HvTManagerOfProbes() {
    manager.AddObject(&a);
    manager.AddObject(&b);
    manager.EnableTips(false);
    manager.Draw();
    log.take();
  }

  // Whether this message requested a repaint.
  bool send(std::uint32_t id, HvPoint pos) {
    if (manager.WantsRepaint()) manager.Draw();
    log.take();
    return manager.PostMessage(HvMessage::OfPosition(id, pos));
  }
  bool move(float x, float y) { return send(kPenMoved, {x, y}); }
  bool press(float x, float y) { return send(kPenDown, {x, y}); }
  bool release(float x, float y) { return send(kPenUp, {x, y}); }

  CallLog log;
  Probe a{log, "a", square(0, 0, 20)};
  Probe b{log, "b", square(15, 0, 20)};
  HvTManager manager;
};

TEST(HvTManager, StartsWithThePenUpAtTheOrigin) {
  HvTManager manager;
  EXPECT_EQ(manager.Hover(), nullptr);
  EXPECT_EQ(manager.Fallback(), nullptr);
  EXPECT_EQ(manager.GetPenPos(), (HvPoint{0, 0}));
  EXPECT_FALSE(manager.IsPenDown());
  EXPECT_EQ(manager.Tolerance(), (HvPoint{3, 3}));
  EXPECT_FALSE(manager.WantsRepaint());
  EXPECT_FALSE(manager.IsPicking());
  EXPECT_TRUE(manager.TipsEnabled());
}

TEST(HvTManager, TakesObjectsOnce) {
  CallLog log;
  Probe probe(log, "p", square(0, 0, 1));
  Probe hidden(log, "h", square(0, 0, 1));
  HvTGroup group("g");
  HvTManager manager;
  EXPECT_EQ(manager.AddObject(nullptr), 0);
  EXPECT_FALSE(manager.WantsRepaint());
  hidden.SetVisibility(HvTObject::kPickable);
  EXPECT_EQ(manager.AddObject(&hidden), 1);
  EXPECT_FALSE(manager.WantsRepaint());
  probe.SetParent(&group);
  group.Remove(&probe);
  EXPECT_EQ(manager.AddObject(&probe), 1);
  EXPECT_TRUE(manager.WantsRepaint());
  EXPECT_EQ(probe.Parent(), nullptr);
  EXPECT_EQ(probe.Manager(), &manager);
  manager.Draw();
  EXPECT_EQ(manager.AddObject(&probe), 0);
  EXPECT_FALSE(manager.WantsRepaint());
}

TEST_F(HvTManagerOfProbes, IgnoresEverythingButThePen) {
  for (const std::uint32_t id : {0u, 100u, 104u, 200u, 201u, 202u, 203u}) {
    EXPECT_FALSE(send(id, {5, 5})) << id;
    EXPECT_EQ(manager.GetPenPos(), (HvPoint{0, 0}));
  }
  EXPECT_EQ(log.take(), "");
}

TEST_F(HvTManagerOfProbes, FollowsThePen) {
  move(3, 4);
  EXPECT_EQ(manager.GetPenPos(), (HvPoint{3, 4}));
  EXPECT_EQ(manager.GetPenDelta(), (HvPoint{3, 4}));
  press(5, 3);
  EXPECT_EQ(manager.GetPenDelta(), (HvPoint{2, -1}));
  EXPECT_TRUE(manager.IsPenDown());
  release(6, 6);
  EXPECT_EQ(manager.GetPenPos(), (HvPoint{6, 6}));
  EXPECT_FALSE(manager.IsPenDown());
}

TEST_F(HvTManagerOfProbes, TakesTheSecondKindOfPositionToo) {
  struct SecondKind : HvMessage {
    explicit SecondKind(HvPoint pos) : HvMessage(kPenMoved, kHoldsPositionToo, &pos, sizeof pos) {}
  };
  manager.PostMessage(SecondKind({5, 5}));
  EXPECT_EQ(manager.GetPenPos(), (HvPoint{5, 5}));
  EXPECT_EQ(manager.Hover(), &a);
}

TEST_F(HvTManagerOfProbes, KeepsThePositionWithoutOne) {
  move(5, 5);
  log.take();
  manager.PostMessage(HvMessage(kPenDown));
  EXPECT_EQ(manager.GetPenPos(), (HvPoint{5, 5}));
  EXPECT_EQ(manager.GetPenDelta(), (HvPoint{5, 5}));
  EXPECT_TRUE(manager.IsPenDown());
  EXPECT_EQ(log.take(), "Leave a; Press a 5 5; ");
}

TEST_F(HvTManagerOfProbes, EntersAndLeavesAsThePenMoves) {
  EXPECT_TRUE(move(5, 5));
  EXPECT_EQ(log.take(), "Enter a 5 5; ");
  EXPECT_EQ(manager.Hover(), &a);
  EXPECT_EQ(manager.Hit(), &a);
  EXPECT_TRUE(a.IsHovered());
  EXPECT_FALSE(move(6, 5)) << "the same is hovered";
  EXPECT_EQ(log.take(), "Leave a; Enter a 6 5; ");
  EXPECT_TRUE(move(17, 5));
  EXPECT_EQ(log.take(), "Leave a; Enter b 17 5; ") << "b lies above a";
  EXPECT_TRUE(move(17, 50));
  EXPECT_EQ(log.take(), "Leave b; ");
  EXPECT_EQ(manager.Hover(), nullptr);
  EXPECT_FALSE(move(17, 60));
  EXPECT_EQ(log.take(), "");
}

TEST_F(HvTManagerOfProbes, IgnoresWhatEnterAndLeaveAnswerWhileHovering) {
  a.enterResult = a.leaveResult = 0;
  EXPECT_TRUE(move(5, 5));
  a.enterResult = a.leaveResult = 1;
  EXPECT_FALSE(move(6, 6));
}

TEST_F(HvTManagerOfProbes, OverlooksTheSmallestMoves) {
  move(5, 5);
  a.picks = 0;
  const auto still = [&](float dx, float dy) {
    a.picks = 0;
    const HvPoint pos = manager.GetPenPos() + HvPoint{dx, dy};
    EXPECT_FALSE(move(pos.x, pos.y));
    EXPECT_EQ(manager.GetPenPos(), pos);
    return a.picks == 0;
  };
  EXPECT_TRUE(still(0, 0));
  EXPECT_TRUE(still(0.0009f, -0.0009f));
  EXPECT_FALSE(still(0.002f, 0));
  EXPECT_FALSE(still(0, -0.002f));
  // From the origin differences are exact: 0.001 itself counts as no move.
  move(0, 0);
  EXPECT_TRUE(still(0.001f, 0));
  move(0, 0);
  EXPECT_TRUE(still(0, 0.001f));
  move(0, 0);
  EXPECT_FALSE(still(0, 0.0010001f));
}

TEST_F(HvTManagerOfProbes, RepaintsForATipWithEveryMove) {
  manager.EnableTips(true);
  EXPECT_TRUE(move(5, 5));
  EXPECT_TRUE(move(5, 5)) << "even one that overlooks";
  EXPECT_EQ(log.take(), "");
  press(5, 5);
  a.dragResult = 0;
  EXPECT_TRUE(move(6, 6)) << "and a drag that changes nothing";
  release(500, 500);
  EXPECT_FALSE(move(600, 600));
}

TEST_F(HvTManagerOfProbes, PressesAfterALeaveAndAScan) {
  move(5, 5);
  a.picks = b.picks = 0;
  a.logsPicks = true;
  EXPECT_TRUE(press(6, 6));
  EXPECT_EQ(log.take(), "Leave a; Pick a 6 6; Press a 6 6; ");
  EXPECT_TRUE(a.IsPressed());
  EXPECT_FALSE(a.IsHovered());
}

TEST_F(HvTManagerOfProbes, PressesWhatIsUnderThePenNow) {
  move(5, 5);
  press(30, 5);
  EXPECT_EQ(log.take(), "Leave a; Press b 30 5; ");
  EXPECT_EQ(manager.Hover(), &b);
}

TEST_F(HvTManagerOfProbes, AsksForARepaintByEachAnswerToAPress) {
  const auto asks = [&](std::int32_t leave, std::int32_t press_) {
    release(5, 5);
    a.leaveResult = leave;
    a.pressResult = press_;
    return press(5, 5);
  };
  EXPECT_FALSE(asks(0, 0));
  EXPECT_TRUE(asks(1, 0));
  EXPECT_TRUE(asks(0, 2));
  release(500, 0);
  EXPECT_FALSE(press(500, 1)) << "nothing is there to answer";
}

TEST_F(HvTManagerOfProbes, DragsWhatWasPressedWhereverThePenGoes) {
  press(5, 5);
  a.picks = b.picks = 0;
  EXPECT_TRUE(move(30, 5));
  EXPECT_EQ(log.take(), "Drag a 30 5; ");
  EXPECT_TRUE(move(-500, 900));
  EXPECT_TRUE(move(-500, 900)) << "no move is too small for a drag";
  EXPECT_EQ(log.take(), "Drag a -500 900; ");
  EXPECT_EQ(a.picks + b.picks, 0);
  EXPECT_EQ(manager.Hover(), &a);
}

TEST_F(HvTManagerOfProbes, TakesBackARepaintAfterADragThatChangesNothing) {
  press(5, 5);
  manager.WantRepaint();
  a.dragResult = 0;
  EXPECT_FALSE(manager.PostMessage(HvMessage::OfPosition(kPenMoved, {6, 6})));
  a.dragResult = -1;
  EXPECT_TRUE(manager.PostMessage(HvMessage::OfPosition(kPenMoved, {7, 7})));
}

TEST_F(HvTManagerOfProbes, KeepsARepaintWhileNothingIsDragged) {
  press(500, 500);
  manager.WantRepaint();
  EXPECT_TRUE(manager.PostMessage(HvMessage::OfPosition(kPenMoved, {6, 6})));
  EXPECT_EQ(manager.Hover(), nullptr);
  EXPECT_EQ(log.take(), "");
}

TEST_F(HvTManagerOfProbes, EntersWhatIsUnderThePenAfterARelease) {
  press(5, 5);
  move(30, 5);
  EXPECT_TRUE(release(31, 5));
  EXPECT_EQ(log.take(), "Release a; Enter b 31 5; ");
  EXPECT_FALSE(a.IsPressed());
  EXPECT_TRUE(b.IsHovered());
  EXPECT_EQ(manager.Hover(), &b);
}

TEST_F(HvTManagerOfProbes, AsksForARepaintByEachAnswerToARelease) {
  const auto asks = [&](std::int32_t release_, std::int32_t enter) {
    press(5, 5);
    a.releaseResult = release_;
    a.enterResult = enter;
    return release(5, 5);
  };
  EXPECT_FALSE(asks(0, 0));
  EXPECT_TRUE(asks(1, 0));
  EXPECT_TRUE(asks(0, 1));
}

TEST_F(HvTManagerOfProbes, StopsAtTheEmptySpaceOfASolidGroup) {
  Probe inside(log, "i", square(0, 0, 2));
  Probe corner(log, "c", square(38, 38, 2));
  HvTGroup group("g");
  inside.SetParent(&group);
  corner.SetParent(&group);
  manager.AddObject(&group);
  EXPECT_FALSE(press(25, 10));
  EXPECT_EQ(manager.Hover(), nullptr);
  EXPECT_EQ(manager.Hit(), nullptr);
  EXPECT_EQ(b.picks, 0) << "b lies beneath";
  EXPECT_EQ(log.take(), "");
  release(25, 10);
  group.SetGroupFlags(0);
  press(25, 10);
  EXPECT_EQ(manager.Hover(), &b);
  group.Detach();
}

TEST_F(HvTManagerOfProbes, LeadsDownAGroupToItsChild) {
  Probe inside(log, "i", square(0, 0, 2));
  HvTGroup group("g");
  inside.SetParent(&group);
  manager.AddObject(&group);
  press(1, 1);
  EXPECT_EQ(log.take(), "Press i 1 1; ");
  EXPECT_EQ(manager.Hover(), &inside);
  EXPECT_EQ(manager.Hit(), &group);
  EXPECT_EQ(group.Target(), &inside);
  EXPECT_EQ(inside.Target(), &inside);
  group.Detach();
}

TEST_F(HvTManagerOfProbes, FallsBackOnAWidgetWhereNothingIsHit) {
  Probe inside(log, "i", square(0, 0, 2));
  HvTGroup inner("inner");
  HvTGroup outer("outer");
  inside.SetParent(&inner);
  inner.SetParent(&outer);
  outer.SetGroupFlags(0);
  inner.SetGroupFlags(0);
  manager.AddObject(&outer);
  manager.SetFallback(&inside);
  EXPECT_TRUE(move(700, 700));
  EXPECT_EQ(manager.Hover(), &inside);
  EXPECT_EQ(manager.Hit(), &outer);
  EXPECT_EQ(outer.Target(), &inner);
  EXPECT_EQ(inner.Target(), &inside);
  EXPECT_EQ(inside.Target(), &inside);
  EXPECT_EQ(log.take(), "Enter i 700 700; ");
  move(30, 5);
  EXPECT_EQ(manager.Hover(), &b) << "what is hit comes first";
  for (const std::uint32_t state : {0u, 1u, 2u}) {
    inside.SetVisibility(state);
    move(700, 700 + static_cast<float>(state));
    EXPECT_EQ(manager.Hover(), nullptr);
    EXPECT_EQ(manager.Hit(), nullptr);
  }
  inside.SetVisibility(3);
  move(800, 800);
  EXPECT_EQ(manager.Hover(), &inside);
  outer.Detach();
  EXPECT_EQ(manager.Hover(), nullptr);
  EXPECT_EQ(manager.Fallback(), nullptr);
}

TEST_F(HvTManagerOfProbes, FallsBackAtTheTop) {
  manager.SetFallback(&a);
  press(900, 900);
  EXPECT_EQ(manager.Hit(), &a);
  EXPECT_EQ(log.take(), "Press a 900 900; ");
}

TEST_F(HvTManagerOfProbes, FallsBackOnWhatASolidGroupSwallows) {
  HvTGroup group("g");
  manager.AddObject(&group);
  manager.SetFallback(&a);
  press(0, 0);
  EXPECT_EQ(manager.Hover(), &a);
  group.Detach();
}

TEST_F(HvTManagerOfProbes, OnlyMovesThePenWhileItHandlesAMessage) {
  press(5, 5);
  a.whileDragged = [&] {
    a.whileDragged = nullptr;
    manager.PostMessage(HvMessage::OfPosition(kPenUp, {40, 50}));
    EXPECT_FALSE(manager.IsPenDown());
    EXPECT_EQ(manager.GetPenPos(), (HvPoint{40, 50}));
    EXPECT_EQ(manager.GetPenDelta(), (HvPoint{34, 44}));
    manager.PostMessage(HvMessage::OfPosition(kPenDown, {41, 50}));
    EXPECT_TRUE(manager.IsPenDown());
    manager.PostMessage(HvMessage::OfPosition(kPenUp, {42, 50}));
  };
  EXPECT_TRUE(move(6, 6));
  EXPECT_EQ(log.take(), "Drag a 6 6; ") << "and nothing else of the three";
  EXPECT_TRUE(a.IsPressed());
  EXPECT_FALSE(manager.IsPenDown());
  EXPECT_EQ(manager.Hover(), &a);
  // The next one is handled again.
  move(30, 5);
  EXPECT_EQ(log.take(), "Leave a; Enter b 30 5; ");
}

TEST_F(HvTManagerOfProbes, ReportsThatAPickIsRunning) {
  bool seen = false;
  a.whilePicked = [&] { seen = manager.IsPicking(); };
  move(5, 5);
  EXPECT_TRUE(seen);
  EXPECT_FALSE(manager.IsPicking());
}

TEST_F(HvTManagerOfProbes, HandlesTheNextMessageAfterOneThatThrew) {
  press(5, 5);
  a.whileDragged = [] { throw std::runtime_error("refused"); };
  EXPECT_THROW(move(6, 6), std::runtime_error);
  a.whileDragged = nullptr;
  EXPECT_TRUE(move(7, 7));
  EXPECT_EQ(log.take(), "Drag a 7 7; ");
  release(30, 5);
  EXPECT_EQ(manager.Hover(), &b);
}

TEST_F(HvTManagerOfProbes, IsNotPickingAfterAPickThatThrew) {
  a.whilePicked = [] { throw std::runtime_error("refused"); };
  EXPECT_THROW(move(5, 5), std::runtime_error);
  EXPECT_FALSE(manager.IsPicking());
  a.whilePicked = nullptr;
  move(6, 6);
  EXPECT_EQ(manager.Hover(), &a);
}

TEST_F(HvTManagerOfProbes, PicksByItsTolerance) {
  manager.SetTolerance({7, 0.5f});
  move(-6, 5);
  EXPECT_EQ(a.pickedWith, (HvPoint{7, 0.5f}));
  a.picks = 0;
  move(5, -1);
  EXPECT_EQ(a.picks, 0);
}

TEST_F(HvTManagerOfProbes, DrawsATipUpAndRightOfThePen) {
  manager.EnableTips(true);
  move(30, 5);
  log.take();
  manager.Draw();
  EXPECT_EQ(log.take(), "Draw a; Draw b; DrawTip b 38 13; ");
  EXPECT_FALSE(manager.WantsRepaint());
  manager.EnableTips(false);
  manager.Draw();
  EXPECT_EQ(log.take(), "Draw a; Draw b; ");
}

TEST_F(HvTManagerOfProbes, ForgetsWhatLeaves) {
  {
    Probe passing(log, "p", square(50, 50, 10));
    manager.AddObject(&passing);
    press(55, 55);
    EXPECT_EQ(manager.Hover(), &passing);
    passing.Detach();
  }
  EXPECT_EQ(manager.Hover(), nullptr);
  EXPECT_EQ(manager.Hit(), nullptr);
  EXPECT_FALSE(move(56, 56));
  EXPECT_FALSE(release(57, 57));
  EXPECT_EQ(log.take(), "");
}

TEST_F(HvTManagerOfProbes, ForgetsAChildThatLeavesItsGroupDuringADrag) {
  HvTGroup group("g");
  {
    Probe passing(log, "p", square(50, 50, 10));
    passing.SetParent(&group);
    manager.AddObject(&group);
    press(55, 55);
    passing.Detach();
  }
  EXPECT_FALSE(move(56, 56));
  release(5, 5);
  EXPECT_EQ(log.take(), "Enter a 5 5; ");
  group.Detach();
}

TEST(HvTManager, LeavesItsObjectsWithoutAManager) {
  CallLog log;
  Probe probe(log, "p", square(0, 0, 1));
  {
    HvTManager manager;
    manager.AddObject(&probe);
    manager.PostMessage(HvMessage::OfPosition(kPenMoved, {1, 1}));
    EXPECT_EQ(manager.Hover(), &probe);
  }
  EXPECT_EQ(probe.Manager(), nullptr);
  probe.MarkDirty();
}

TEST(HvTManager, IgnoresTheSender) {
  CallLog log;
  Probe probe(log, "p", square(0, 0, 1));
  HvTManager manager;
  manager.AddObject(&probe);
  HvMessageSender sender;
  LinkHandler(&manager, &sender);
  sender.Send(HvMessage::OfPosition(kPenDown, {1, 1}));
  EXPECT_TRUE(probe.IsPressed());
}

}  // namespace
}  // namespace vblur
