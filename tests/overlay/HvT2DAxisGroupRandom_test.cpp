// Picking among the children of an axis group under random transforms, against brute force.
#include <algorithm>
#include <cmath>
#include <list>
#include <numbers>

#include <gtest/gtest.h>

#include "overlay/HvT2DAxisGroup.h"
#include "overlay/HvTManager.h"
#include "tests/overlay/Probe.h"
#include "tests/support/Random.h"

namespace vblur {
namespace {

// A group with squares in both containers, and a brute-force pick over all of them.
class GroupOfSquares {
 public:
  explicit GroupOfSquares(test::Random& random) {
    group.ShowOwnAxis(false);
    group.SetScale(random.between(0.5f, 2) * random.oneOf({1.0f, -1.0f}));
    group.SetAxisScale(random.between(0.5f, 2), random.between(0.5f, 2) * random.oneOf({1.0f, -1.0f}));
    group.SetRotation(random.between(-360, 360));
    group.SetAspect(random.between(-0.5f, 0.5f));
    group.SetCentre(random.between(-100, 100), random.between(-100, 100));
    addSquares(random, second, true);
    addSquares(random, first, false);
  }

  // The topmost square at a point in the group's own space, those of the first container first.
  const HvTObject* at(double x, double y) const {
    for (const auto* squares : {&first, &second}) {
      for (auto child = squares->rbegin(); child != squares->rend(); ++child) {
        const HvBox box = child->Box();
        if (box.minX <= x && x <= box.maxX && box.minY <= y && y <= box.maxY) return &*child;
      }
    }
    return nullptr;
  }
  // Too near an edge: rounding decides.
  bool isAtAnEdge(double x, double y) const {
    const auto isNear = [&](const test::Probe& child) {
      const HvBox box = child.Box();
      return std::min({std::abs(x - box.minX), std::abs(x - box.maxX), std::abs(y - box.minY),
                       std::abs(y - box.maxY)}) < 1e-3;
    };
    return std::any_of(first.begin(), first.end(), isNear) || std::any_of(second.begin(), second.end(), isNear);
  }

  test::CallLog log;
  std::list<test::Probe> first;
  std::list<test::Probe> second;
  HvT2DAxisGroup group{"group", HvT2DAxis::kTranslate};

 private:
  void addSquares(test::Random& random, std::list<test::Probe>& squares, bool intoSecond) {
    group.AddIntoSecond(intoSecond);
    for (int count = random.within(1, 30); count > 0; --count) {
      const HvPoint corner{random.between(-100, 90), random.between(-100, 90)};
      squares.emplace_back(log, "square", test::square(corner.x, corner.y, random.between(1, 30)));
      squares.back().SetParent(&group);
    }
  }
};

TEST(HvT2DAxisGroupRandom, PicksAsBruteForceDoes) {
  int checked = 0;
  int hits = 0;
  test::forRandomCases(300, [&](test::Random& random) {
    GroupOfSquares squares(random);
    const HvT2DAxisGroup& group = squares.group;
    HvTManager manager;
    manager.EnableTips(false);
    manager.AddObject(&squares.group);
    const double angle = -group.Rotation() * std::numbers::pi / 180;
    for (int i = 0; i < 40; ++i) {
      const HvPoint offset{random.between(-120, 120), random.between(-120, 120)};
      const HvPoint pos = group.Centre() + offset;
      const double x = (offset.x * std::cos(angle) - offset.y * std::sin(angle)) /
                       (group.Scale() * group.AxisScale().x * group.XAspect());
      const double y = (offset.x * std::sin(angle) + offset.y * std::cos(angle)) /
                       (group.Scale() * group.AxisScale().y * group.YAspect());
      if (squares.isAtAnEdge(x, y)) continue;
      manager.SetTolerance({random.between(0, 5), random.between(0, 5)});
      manager.PostMessage(HvMessage::OfPosition(kPenDown, pos));
      ASSERT_EQ(manager.Hover(), squares.at(x, y)) << pos.x << ' ' << pos.y;
      manager.PostMessage(HvMessage::OfPosition(kPenUp, pos));
      ++checked;
      hits += manager.Hover() != nullptr ? 1 : 0;
    }
  });
  EXPECT_GT(checked, 0);
  EXPECT_GT(hits, 0);
}

}  // namespace
}  // namespace vblur
