#include "overlay/HvTGroup.h"

#include <gtest/gtest.h>

#include "tests/overlay/Probe.h"
#include "tests/support/gl/GlRecording.h"

namespace vblur {
namespace {

using test::CallLog;
using test::Probe;
using test::square;

class HvTGroupOfProbes : public ::testing::Test {
 protected:
  CallLog log;
  // Declared so that containers end before their children.
  Probe a{log, "a", square(0, 0, 10)};
  Probe b{log, "b", square(5, -5, 10)};
  HvTGroup group{"group"};
  HvTGroup outer{"outer"};
  HvTManager manager;
};

TEST_F(HvTGroupOfProbes, StartsSolidWithAGreyBackground) {
  EXPECT_EQ(group.GroupFlags(), 7u);
  EXPECT_EQ(group.BackgroundColour(), (HvColour{0.6f, 0.6f, 0.6f}));
  EXPECT_EQ(group.Flags(), 1u) << "its box follows its children alone";
  EXPECT_EQ(group.State(), 3u);
  EXPECT_EQ(group.Drag({}), 0);
  EXPECT_EQ(group.ToLocal({3, 4}), (HvPoint{3, 4}));
}

TEST_F(HvTGroupOfProbes, KeepsItsBoxWithoutChildren) {
  HvBox box{1, 2, 3, 4};
  EXPECT_EQ(group.Bounds(box), 2);
  EXPECT_EQ(box, (HvBox{0, 0, 0, 0}));
  group.ChildChanged(nullptr);
  EXPECT_TRUE(group.HasBox());
  EXPECT_EQ(group.Box(), (HvBox{0, 0, 0, 0}));
}

TEST_F(HvTGroupOfProbes, AttachesAChildBySetParent) {
  manager.AddObject(&group);
  a.SetParent(&group);
  EXPECT_EQ(a.Parent(), &group);
  EXPECT_EQ(a.Manager(), &manager);
  EXPECT_EQ(group.Box(), (HvBox{0, 10, 0, 10}));
  b.SetParent(&group);
  EXPECT_EQ(group.Box(), (HvBox{0, 15, -5, 10}));
  EXPECT_EQ(group.BoxState(), 1);
  a.SetParent(&group);
  EXPECT_EQ(a.Parent(), &group);
  EXPECT_EQ(group.Children().First()->next->next, nullptr);
}

TEST_F(HvTGroupOfProbes, AddChildAloneLeavesTheParentUnset) {
  manager.AddObject(&group);
  EXPECT_EQ(group.AddChild(nullptr), 0);
  EXPECT_EQ(group.AddChild(&a), 1);
  EXPECT_EQ(a.Parent(), nullptr);
  EXPECT_EQ(a.Manager(), &manager);
  EXPECT_EQ(group.Origin(), (HvPoint{0, 0}));
  EXPECT_EQ(group.Size(), (HvPoint{10, 10}));
  EXPECT_EQ(group.AddChild(&b), 1);
  EXPECT_EQ(group.Box(), (HvBox{0, 15, -5, 10}));
  EXPECT_EQ(group.AddChild(&b), 0);
}

TEST_F(HvTGroupOfProbes, TakesTheBoxOfAFirstChildAsItIs) {
  a.SetOrigin({4, 4});
  a.SetSize({-2, 3});
  group.AddChild(&a);
  EXPECT_EQ(group.Origin(), (HvPoint{4, 4}));
  EXPECT_EQ(group.Size(), (HvPoint{-2, 3}));
}

TEST_F(HvTGroupOfProbes, LosesItsBoxWithAChildThatHasNone) {
  a.SetParent(&group);
  b.dropBox();
  b.SetParent(&group);
  EXPECT_FALSE(group.HasBox());
  EXPECT_EQ(group.BoxState(), 0);
  EXPECT_EQ(group.Box(), (HvBox{0, 10, 0, 10}));
  EXPECT_EQ(group.RemoveChild(&b), 1);
  EXPECT_TRUE(group.HasBox());
}

TEST_F(HvTGroupOfProbes, IsAlwaysAskedWithoutABox) {
  b.dropBox();
  b.SetParent(&group);
  manager.AddObject(&group);
  manager.SetTolerance({1, 1});
  manager.PostMessage(HvMessage::OfPosition(kPenMoved, {4000, 4000}));
  EXPECT_EQ(b.picks, 1);
}

TEST_F(HvTGroupOfProbes, UnitesBoxesAfterAChildWithoutOne) {
  a.dropBox();
  a.SetParent(&group);
  EXPECT_FALSE(group.HasBox());
  EXPECT_EQ(group.AddChild(&b), 1);
  EXPECT_TRUE(group.HasBox()) << "of the last child alone, until the next change";
  EXPECT_EQ(group.Origin(), (HvPoint{5, -5}));
  EXPECT_EQ(group.AddChild(&b), 0);
}

TEST_F(HvTGroupOfProbes, NotifiesItsParentOfItsBox) {
  group.SetParent(&outer);
  a.SetParent(&group);
  b.SetParent(&group);
  EXPECT_EQ(outer.Box(), (HvBox{0, 15, -5, 10}));
  a.SetOrigin({-100, 0});
  EXPECT_EQ(group.Box(), (HvBox{-100, 15, -5, 10}));
  EXPECT_EQ(outer.Box(), (HvBox{-100, 15, -5, 10}));
  group.RemoveChild(&a);
  EXPECT_EQ(outer.Box(), (HvBox{5, 15, -5, 5}));
  group.RemoveChild(&b);
  EXPECT_EQ(outer.Box(), (HvBox{0, 0, 0, 0}));
  EXPECT_TRUE(outer.HasBox());
}

TEST_F(HvTGroupOfProbes, RemovesAChild) {
  manager.AddObject(&group);
  a.SetParent(&group);
  EXPECT_EQ(group.RemoveChild(&b), 0);
  EXPECT_EQ(group.RemoveChild(nullptr), 0);
  group.SetTarget(&a);
  EXPECT_EQ(group.RemoveChild(&a), 1);
  EXPECT_EQ(a.Parent(), nullptr);
  EXPECT_EQ(a.Manager(), nullptr);
  EXPECT_EQ(group.Target(), nullptr);
  EXPECT_EQ(group.Hit(), nullptr);
  EXPECT_EQ(group.RemoveChild(&a), 0);
}

TEST_F(HvTGroupOfProbes, HandsItsManagerDown) {
  group.SetParent(&outer);
  a.SetParent(&group);
  EXPECT_EQ(a.Manager(), nullptr);
  manager.AddObject(&outer);
  EXPECT_EQ(a.Manager(), &manager);
  outer.Detach();
  EXPECT_EQ(a.Manager(), nullptr);
  EXPECT_EQ(a.Parent(), &group);
}

TEST_F(HvTGroupOfProbes, PutsATargetIntoItsHit) {
  group.SetTarget(&a);
  EXPECT_EQ(group.Target(), &a);
  EXPECT_EQ(group.Hit(), &a);
  group.SetTarget(nullptr);
  EXPECT_EQ(group.Target(), &group);
  EXPECT_EQ(group.Hit(), &group);
}

TEST_F(HvTGroupOfProbes, PicksItsChildrenAtTheSamePoint) {
  a.SetParent(&group);
  EXPECT_EQ(group.Pick({4, 5}, {2, 1}), HvPick(&a));
  EXPECT_EQ(a.pickedAt, (HvPoint{4, 5}));
  EXPECT_EQ(a.pickedWith, (HvPoint{2, 1}));
  EXPECT_EQ(group.Hit(), &a);
  EXPECT_EQ(group.Target(), &a);
}

TEST_F(HvTGroupOfProbes, SwallowsAMissWhereItIsSolid) {
  a.SetParent(&group);
  group.SetTarget(&a);
  EXPECT_EQ(group.Pick({400, 5}, {2, 1}), HvPick::Swallowed());
  EXPECT_EQ(group.Target(), nullptr);
  group.SetGroupFlags(HvTGroup::kDrawBackground | HvTGroup::kGreyBackground);
  EXPECT_EQ(group.Pick({400, 5}, {2, 1}), HvPick());
}

TEST_F(HvTGroupOfProbes, PassesOnWhatAGroupWithinSwallowed) {
  group.SetParent(&outer);
  a.SetParent(&group);
  outer.SetGroupFlags(0);
  EXPECT_EQ(outer.Pick({11, 11}, {2, 2}), HvPick::Swallowed());
  EXPECT_EQ(outer.Target(), nullptr);
  EXPECT_EQ(outer.Pick({13, 13}, {2, 2}), HvPick());
}

TEST_F(HvTGroupOfProbes, PaintsItsBackgroundAndThenItsChildren) {
  test::GlRecording recording;
  a.SetParent(&group);
  group.SetBackgroundColour({0.25f, 0.5f, 1});
  group.Draw();
  EXPECT_EQ(recording.text(), "glColor3f(0.6, 0.6, 0.6)\nglRectf(0, 0, 10, 10)\n");
  EXPECT_EQ(log.take(), "Draw a; ");
  recording.clear();
  group.SetGroupFlags(HvTGroup::kDrawBackground);
  group.Draw();
  EXPECT_EQ(recording.text(), "glColor3f(0.25, 0.5, 1)\nglRectf(0, 0, 10, 10)\n");
  recording.clear();
  group.SetGroupFlags(HvTGroup::kGreyBackground | HvTGroup::kSolid);
  group.Draw();
  EXPECT_EQ(recording.text(), "");
  EXPECT_EQ(log.take(), "Draw a; Draw a; ");
}

TEST_F(HvTGroupOfProbes, ForgetsItsChildrenWhenItEnds) {
  {
    HvTGroup passing("passing");
    a.SetParent(&passing);
  }
  EXPECT_EQ(a.Parent(), nullptr);
}

}  // namespace
}  // namespace vblur
