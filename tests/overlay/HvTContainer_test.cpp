#include "overlay/HvTContainer.h"

#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/overlay/Probe.h"

namespace vblur {
namespace {

using test::CallLog;
using test::Probe;
using test::square;

constexpr float kContainerMost = std::numeric_limits<float>::max();

// An object between container and leaf, with a transform.
class Shifted : public Probe {
 public:
  using Probe::Probe;
  HvPick Pick(HvPoint, HvPoint) override { return way; }
  HvPoint ToLocal(HvPoint pos) override {
    log.add(std::string("ToLocal ") + Name());
    return {pos.x - 100, pos.y * 2};
  }
  void PushTransform() override { log.add(std::string("Push ") + Name()); }
  void PopTransform() override { log.add(std::string("Pop ") + Name()); }
  HvTObject* way = nullptr;
};

class HvTContainerOfProbes : public ::testing::Test {
 protected:
  HvBox boundsOf(HvTContainer& any) {
    HvBox box;
    const std::int32_t state = any.Bounds(box);
    EXPECT_EQ(state, any.BoxState());
    return box;
  }

  CallLog log;
  Probe a{log, "a", square(0, 0, 10)};
  Probe b{log, "b", square(5, 5, 10)};
  Probe c{log, "c", square(-20, 40, 1)};
  HvTContainer container;
};

TEST_F(HvTContainerOfProbes, IsEmptyAtFirst) {
  EXPECT_EQ(container.Hit(), nullptr);
  EXPECT_FALSE(container.OwnsChildren());
  EXPECT_EQ(container.BoxState(), 2);
  EXPECT_EQ(boundsOf(container), (HvBox{0, 0, 0, 0}));
  EXPECT_EQ(container.BoxState(), 2);
}

TEST_F(HvTContainerOfProbes, AppendsAChildOnce) {
  EXPECT_EQ(container.Append(nullptr), 0);
  EXPECT_EQ(container.BoxState(), 2);
  EXPECT_EQ(container.Append(&a), 1);
  EXPECT_EQ(container.BoxState(), 1);
  b.dropBox();
  EXPECT_EQ(container.Append(&b), 1);
  EXPECT_EQ(container.BoxState(), 0);
  EXPECT_EQ(container.Append(&c), 1);
  EXPECT_EQ(container.BoxState(), 1) << "of the last child alone";
  EXPECT_EQ(container.Append(&b), 0);
  EXPECT_EQ(container.BoxState(), 1);
  EXPECT_EQ(container.Children().Last()->element, &c);
  EXPECT_EQ(a.Parent(), nullptr);
}

TEST_F(HvTContainerOfProbes, RemovesAChild) {
  container.Append(&a);
  container.Append(&b);
  EXPECT_EQ(container.Remove(nullptr), 0);
  EXPECT_EQ(container.Remove(&c), 0);
  container.SetHit(&a);
  EXPECT_EQ(container.Remove(&b), 1);
  EXPECT_EQ(container.Hit(), &a);
  EXPECT_EQ(container.Remove(&a), 1);
  EXPECT_EQ(container.Hit(), nullptr) << "what has gone is not pressed";
  EXPECT_EQ(container.Remove(&a), 0);
  container.Children().Append(&c);
  container.Children().Append(&c);
  EXPECT_EQ(container.Remove(&c), 1);
  EXPECT_EQ(container.Children().First(), nullptr);
}

TEST_F(HvTContainerOfProbes, BoundsAllChildren) {
  container.Append(&a);
  container.Append(&b);
  EXPECT_EQ(boundsOf(container), (HvBox{0, 15, 0, 15}));
  container.Append(&c);
  EXPECT_EQ(boundsOf(container), (HvBox{-20, 15, 0, 41}));
  EXPECT_EQ(container.BoxState(), 1);
}

TEST_F(HvTContainerOfProbes, LeavesChildrenWithoutABoxOutOfTheBounds) {
  a.dropBox();
  container.Append(&a);
  EXPECT_EQ(boundsOf(container), (HvBox{kContainerMost, -kContainerMost, kContainerMost, -kContainerMost}));
  EXPECT_EQ(container.BoxState(), 0);
  container.Append(&b);
  EXPECT_EQ(boundsOf(container), (HvBox{5, 15, 5, 15}));
  EXPECT_EQ(container.BoxState(), 0) << "one without a box is enough, wherever it stands";
}

TEST_F(HvTContainerOfProbes, BoundsNegativeSizes) {
  a.SetOrigin({10, 10});
  a.SetSize({-4, -6});
  container.Append(&a);
  EXPECT_EQ(boundsOf(container), (HvBox{6, 10, 4, 10}));
}

TEST_F(HvTContainerOfProbes, ClearsItsChildren) {
  HvTManager manager;
  a.SetManager(&manager);
  container.Append(&a);
  container.Append(&b);
  container.SetHit(&b);
  container.ClearChildren();
  EXPECT_EQ(container.Children().First(), nullptr);
  EXPECT_EQ(container.Hit(), nullptr);
  EXPECT_EQ(a.Manager(), nullptr);
}

TEST_F(HvTContainerOfProbes, DestroysChildrenThatItOwns) {
  struct Dying : Probe {
    using Probe::Probe;
    ~Dying() override { log.add(std::string("end of ") + Name()); }
  };
  {
    HvTContainer owner;
    owner.OwnChildren(true);
    owner.Append(new Dying(log, "x", {}));
    owner.Append(new Dying(log, "y", {}));
  }
  EXPECT_EQ(log.take(), "end of x; end of y; ");
  Dying lives(log, "z", {});
  {
    HvTContainer guest;
    guest.Append(&lives);
  }
  EXPECT_EQ(log.take(), "");
}

TEST_F(HvTContainerOfProbes, DrawsVisibleChildrenFirstToLast) {
  container.Append(&c);
  container.Append(&a);
  container.Append(&b);
  a.SetVisibility(HvTObject::kPickable);
  b.SetVisibility(HvTObject::kVisible);
  container.DrawChildren();
  EXPECT_EQ(log.take(), "Draw c; Draw b; ");
}

TEST_F(HvTContainerOfProbes, PicksTheLastChildFirst) {
  for (Probe* probe : {&a, &b, &c}) {
    probe->logsPicks = true;
    container.Append(probe);
  }
  EXPECT_EQ(container.PickChildren({7, 7}, {3, 3}), HvPick(&b));
  EXPECT_EQ(container.Hit(), &b);
  EXPECT_EQ(b.Target(), &b);
  EXPECT_EQ(log.take(), "Pick b 7 7; ") << "c is too far away to be asked";
  EXPECT_EQ(container.PickChildren({4, 4}, {3, 3}), HvPick(&a));
  EXPECT_EQ(log.take(), "Pick b 4 4; Pick a 4 4; ");
  EXPECT_EQ(b.Target(), nullptr);
  EXPECT_EQ(container.PickChildren({50, 50}, {3, 3}), HvPick());
  EXPECT_EQ(container.Hit(), nullptr);
  EXPECT_EQ(a.Target(), nullptr);
  EXPECT_EQ(log.take(), "");
}

TEST_F(HvTContainerOfProbes, LeavesOutWhatIsHiddenOrNotPickable) {
  container.Append(&a);
  for (const std::uint32_t state : {0u, 1u, 2u}) {
    a.SetTarget(nullptr);
    a.SetVisibility(state);
    EXPECT_EQ(container.PickChildren({1, 1}, {3, 3}), HvPick()) << state;
    EXPECT_EQ(a.Target(), nullptr);
  }
  EXPECT_EQ(a.picks, 0);
  a.SetVisibility(3);
  EXPECT_EQ(container.PickChildren({1, 1}, {3, 3}), HvPick(&a));
}

TEST_F(HvTContainerOfProbes, CullsByTheBoxAndTheToleranceOnEachAxis) {
  container.Append(&a);
  const auto asked = [&](HvPoint pos) {
    a.picks = 0;
    container.PickChildren(pos, {3, 1});
    return a.picks == 1;
  };
  EXPECT_TRUE(asked({-3, 5}));
  EXPECT_FALSE(asked({-3.01f, 5}));
  EXPECT_TRUE(asked({13, 5}));
  EXPECT_FALSE(asked({13.01f, 5}));
  EXPECT_TRUE(asked({5, -1}));
  EXPECT_FALSE(asked({5, -1.01f}));
  EXPECT_TRUE(asked({5, 11}));
  EXPECT_FALSE(asked({5, 11.01f}));
  EXPECT_FALSE(asked({std::numeric_limits<float>::quiet_NaN(), 5}));
  a.dropBox();
  EXPECT_TRUE(asked({1000, 1000}));
  EXPECT_EQ(a.pickedWith, (HvPoint{3, 1}));
}

TEST_F(HvTContainerOfProbes, EndsTheSearchAtASwallowedPick) {
  struct Swallower : Probe {
    using Probe::Probe;
    HvPick Pick(HvPoint, HvPoint) override { return HvPick::Swallowed(); }
  };
  Swallower solid(log, "s", square(0, 0, 10));
  container.Append(&a);
  container.Append(&solid);
  container.SetHit(&a);
  solid.SetTarget(&b);
  EXPECT_EQ(container.PickChildren({5, 5}, {3, 3}), HvPick::Swallowed());
  EXPECT_EQ(container.Hit(), nullptr);
  EXPECT_EQ(solid.Target(), &b) << "what it answered stands, whatever it is";
  EXPECT_EQ(a.picks, 0);
  container.Remove(&solid);
}

TEST_F(HvTContainerOfProbes, LeadsAPointDownTheWayToTheLeaf) {
  Shifted top(log, "top", {});
  Shifted below(log, "below", {});
  top.SetTarget(&below);
  below.SetTarget(&a);
  a.SetTarget(nullptr);
  container.SetHit(&top);
  a.pressResult = 7;
  EXPECT_EQ(container.PressHit({250, 3}), 7);
  EXPECT_EQ(log.take(), "ToLocal top; Push top; ToLocal below; Push below; Press a 50 12; Pop below; Pop top; ");
  a.dragResult = 0;
  EXPECT_EQ(container.DragHit({250, 3}), 0);
  a.enterResult = 2;
  EXPECT_EQ(container.EnterHit({200, 0}), 2);
  EXPECT_EQ(log.take(),
            "ToLocal top; Push top; ToLocal below; Push below; Drag a 50 12; Pop below; Pop top; "
            "ToLocal top; Push top; ToLocal below; Push below; Enter a 0 0; Pop below; Pop top; ");
  a.leaveResult = 3;
  a.releaseResult = 4;
  EXPECT_EQ(container.LeaveHit(), 3);
  EXPECT_EQ(container.ReleaseHit(), 4);
  EXPECT_EQ(log.take(), "Leave a; Release a; ");
}

TEST_F(HvTContainerOfProbes, LeavesEveryTransformWhenTheLeafThrows) {
  Shifted top(log, "top", {});
  top.SetTarget(&a);
  a.SetTarget(nullptr);
  a.whileDragged = [] { throw std::runtime_error("refused"); };
  container.SetHit(&top);
  EXPECT_THROW(container.DragHit({250, 3}), std::runtime_error);
  EXPECT_EQ(log.take(), "ToLocal top; Push top; Drag a 150 6; Pop top; ");
  container.SetHit(nullptr);
}

TEST_F(HvTContainerOfProbes, LeavesTheTransformOfAChildWhosePickThrows) {
  struct Refusing : Shifted {
    using Shifted::Shifted;
    HvPick Pick(HvPoint, HvPoint) override { throw std::runtime_error("refused"); }
  };
  Refusing refusing(log, "r", square(0, 0, 1));
  container.Append(&refusing);
  EXPECT_THROW(container.PickChildren({0, 0}, {1, 1}), std::runtime_error);
  EXPECT_EQ(log.take(), "Push r; Pop r; ");
  container.Remove(&refusing);
}

TEST_F(HvTContainerOfProbes, ActsOnATopThatIsTheLeaf) {
  a.SetTarget(nullptr);
  container.SetHit(&a);
  EXPECT_EQ(container.PressHit({4, 5}), 1);
  EXPECT_EQ(log.take(), "Press a 4 5; ");
}

TEST_F(HvTContainerOfProbes, ActsOnNothingWhereTheWayIsBroken) {
  EXPECT_EQ(container.PressHit({}), 0);
  EXPECT_EQ(container.LeaveHit(), 0);
  Shifted top(log, "top", {});
  container.SetHit(&top);
  EXPECT_EQ(container.DragHit({}), 0);
  EXPECT_EQ(container.ReleaseHit(), 0);
  container.SetHit(nullptr);
}

TEST_F(HvTContainerOfProbes, PicksWithinTheTransformOfTheChild) {
  Shifted shifted(log, "s", square(0, 0, 1));
  shifted.way = &shifted;
  container.Append(&shifted);
  container.PickChildren({0, 0}, {1, 1});
  EXPECT_EQ(log.take(), "Push s; Pop s; ");
  container.Remove(&shifted);
}

}  // namespace
}  // namespace vblur
