#include "overlay/HvTObject.h"

#include <limits>

#include <gtest/gtest.h>

#include "overlay/Drawing.h"
#include "overlay/HvTGroup.h"
#include "tests/overlay/Probe.h"
#include "tests/support/gl/GlRecording.h"

namespace vblur {
namespace {

// The base class with its pure operations filled in.
class PlainWidget : public HvTObject {
 public:
  using HvTObject::HvTObject;
  HvPick Pick(HvPoint, HvPoint) override { return {}; }
  void Draw() override {}
  std::int32_t Drag(HvPoint) override { return 0; }
  void setFlag(Flag flag, bool on) { PutFlag(flag, on); }
};

// Counts ChildChanged.
class NotifiedGroup : public HvTGroup {
 public:
  using HvTGroup::HvTGroup;
  void ChildChanged(HvTObject* child) override {
    ++notified;
    lastChild = child;
    HvTGroup::ChildChanged(child);
  }
  int notified = 0;
  HvTObject* lastChild = nullptr;
};

TEST(HvTObject, StartsPickableAndVisibleWithABox) {
  PlainWidget widget("Ring");
  EXPECT_STREQ(widget.Name(), "Ring");
  EXPECT_EQ(widget.Tip(), nullptr);
  EXPECT_EQ(widget.Manager(), nullptr);
  EXPECT_EQ(widget.Parent(), nullptr);
  EXPECT_EQ(widget.Target(), nullptr);
  EXPECT_EQ(widget.Colour(), (HvColour{1, 1, 1}));
  EXPECT_EQ(widget.Origin(), (HvPoint{0, 0}));
  EXPECT_EQ(widget.Size(), (HvPoint{0, 0}));
  EXPECT_EQ(widget.State(), 3u);
  EXPECT_EQ(widget.HandleScale(), 1.0f);
  EXPECT_FALSE(widget.UsesStackMatrix());
  EXPECT_EQ(widget.Flags(), 7u);
}

TEST(HvTObject, KeepsACopyOfItsName) {
  char name[] = "Ring";
  PlainWidget widget(name);
  name[0] = 'S';
  EXPECT_STREQ(widget.Name(), "Ring");
  EXPECT_EQ(PlainWidget(nullptr).Name(), nullptr);
}

TEST(HvTObject, FindsItselfByItsName) {
  PlainWidget widget("Ring");
  EXPECT_EQ(widget.FindByName("Ring"), &widget);
  EXPECT_EQ(widget.FindByName("ring"), nullptr);
  EXPECT_EQ(widget.FindByName("Rin"), nullptr);
  EXPECT_EQ(widget.FindByName(nullptr), nullptr);
  PlainWidget nameless(nullptr);
  EXPECT_EQ(nameless.FindByName(""), nullptr);
  EXPECT_EQ(nameless.FindByName(nullptr), nullptr);
}

TEST(HvTObject, MovesItsFlagsWithThePen) {
  PlainWidget widget("w");
  EXPECT_EQ(widget.Enter({1, 2}), 1);
  EXPECT_EQ(widget.Flags(), 7u | 16u);
  EXPECT_EQ(widget.Press({1, 2}), 1);
  EXPECT_EQ(widget.Flags(), 7u | 8u | 16u);
  EXPECT_EQ(widget.Leave(), 1);
  EXPECT_EQ(widget.Flags(), 7u | 8u);
  EXPECT_TRUE(widget.IsPressed());
  EXPECT_EQ(widget.Release(), 1);
  EXPECT_EQ(widget.Flags(), 7u);
}

TEST(HvTObject, LeadsPointsFromItsParentToItsOrigin) {
  PlainWidget widget("w");
  widget.SetOrigin({10, 20});
  EXPECT_EQ(widget.ToLocal({11, 18}), (HvPoint{1, -2}));
}

TEST(HvTObject, TakesASizeAndAnOriginOnlyWhereItMay) {
  PlainWidget widget("w");
  NotifiedGroup group("g");
  widget.SetParent(&group);
  group.notified = 0;
  widget.SetOrigin({3, 4});
  widget.SetSize({5, 6});
  EXPECT_EQ(widget.Box(), (HvBox{3, 8, 4, 10}));
  EXPECT_EQ(group.notified, 2);
  EXPECT_EQ(group.lastChild, &widget);
  EXPECT_EQ(group.Box(), (HvBox{3, 8, 4, 10}));
  widget.setFlag(HvTObject::kOriginSettable, false);
  widget.SetOrigin({0, 0});
  EXPECT_EQ(widget.Origin(), (HvPoint{3, 4}));
  widget.SetSize({7, 7});
  EXPECT_EQ(widget.Size(), (HvPoint{7, 7}));
  widget.setFlag(HvTObject::kSizeSettable, false);
  widget.SetSize({1, 1});
  EXPECT_EQ(widget.Size(), (HvPoint{7, 7}));
  EXPECT_EQ(group.notified, 3);
}

TEST(HvTObject, LimitsNoSize) {
  PlainWidget widget("w");
  constexpr float kMost = std::numeric_limits<float>::max();
  EXPECT_EQ(widget.MinSize(), (HvPoint{0, 0}));
  EXPECT_EQ(widget.MaxSize(), (HvPoint{kMost, kMost}));
}

TEST(HvTObject, HasNoChildren) {
  PlainWidget widget("w");
  PlainWidget child("c");
  EXPECT_EQ(widget.AddChild(&child), 0);
  EXPECT_EQ(widget.RemoveChild(&child), 0);
  child.SetParent(&widget);
  EXPECT_EQ(child.Parent(), nullptr);
}

TEST(HvTObject, PointsAtItselfForNoTarget) {
  PlainWidget widget("w");
  PlainWidget other("o");
  widget.SetTarget(&other);
  EXPECT_EQ(widget.Target(), &other);
  widget.SetTarget(nullptr);
  EXPECT_EQ(widget.Target(), &widget);
}

TEST(HvTObject, StoresAHandleScaleAndVisibility) {
  PlainWidget widget("w");
  widget.SetHandleScale(2.5f);
  EXPECT_EQ(widget.HandleScale(), 2.5f);
  widget.SetVisibility(HvTObject::kPickable);
  EXPECT_FALSE(widget.IsVisible());
  EXPECT_TRUE(widget.IsPickable());
  EXPECT_EQ(widget.Flags(), 7u);
}

TEST(HvTObject, AsksItsManagerForARepaint) {
  PlainWidget widget("w");
  widget.MarkDirty();
  HvTManager manager;
  widget.SetVisibility(HvTObject::kPickable);
  manager.AddObject(&widget);
  ASSERT_FALSE(manager.WantsRepaint());
  widget.MarkDirty();
  EXPECT_TRUE(manager.WantsRepaint());
  widget.Detach();
}

TEST(HvTObject, DrawsItsTipUnlessPressed) {
  test::GlRecording recording;
  SetOverlayFont(32);
  PlainWidget widget("w");
  widget.DrawTip({5, 6});
  EXPECT_EQ(recording.text(), "") << "there is none at first";
  char tip[] = "ring";
  widget.SetTip(tip);
  tip[0] = 'k';
  widget.DrawTip({5, 6});
  ASSERT_EQ(recording.lines().size(), 12u);
  EXPECT_EQ(recording.lines()[1], "glRasterPos2f(5, 6)");
  EXPECT_EQ(recording.lines()[4], "glCallLists(4, GL_UNSIGNED_BYTE, \"ring\")");
  recording.clear();
  widget.Press({});
  widget.DrawTip({5, 6});
  EXPECT_EQ(recording.text(), "");
  widget.Release();
  widget.SetTip(nullptr);
  widget.DrawTip({5, 6});
  EXPECT_EQ(recording.text(), "");
  SetOverlayFont(0);
}

TEST(HvTObject, DetachesFromAGroupAndFromAManager) {
  HvTManager manager;
  HvTGroup group("g");
  PlainWidget widget("w");
  manager.AddObject(&group);
  widget.SetParent(&group);
  EXPECT_EQ(widget.Manager(), &manager);
  widget.Detach();
  EXPECT_EQ(widget.Parent(), nullptr);
  EXPECT_EQ(widget.Manager(), nullptr);
  EXPECT_EQ(group.Children().First(), nullptr);
  group.Detach();
  EXPECT_EQ(group.Manager(), nullptr);
  EXPECT_EQ(manager.Children().First(), nullptr);
  group.Detach();
}

TEST(HvTObject, ForgettingItsParentLeavesTheListAsItIs) {
  PlainWidget widget("w");
  HvTGroup group("g");
  widget.SetParent(&group);
  widget.SetParent(nullptr);
  EXPECT_EQ(widget.Parent(), nullptr);
  EXPECT_TRUE(group.Children().Contains(&widget));
}

}  // namespace
}  // namespace vblur
