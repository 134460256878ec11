// Picking in large random trees, against a model without tree traversal or targets: of all that can be hit, the last in
// paint order under the pen wins.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "overlay/HvTGroup.h"
#include "overlay/HvTManager.h"
#include "tests/support/Random.h"

namespace vblur {
namespace {

using test::Random;

constexpr float kTreeSide = 1000.0f;

// Multiples of a quarter, so that sums are exact and pens fall on edges.
float quarters(Random& random, float low, float high) {
  return static_cast<float>(random.within(static_cast<int>(low * 4), static_cast<int>(high * 4))) / 4;
}

// Hit within a lozenge and the tolerance around it.
struct Lozenge {
  HvPoint centre;
  float reach = 0.0f;

  bool isUnder(HvPoint pos, HvPoint tolerance) const {
    return std::abs(pos.x - centre.x) + std::abs(pos.y - centre.y) < reach + tolerance.x + tolerance.y;
  }
};

class LozengeWidget : public HvTObject {
 public:
  LozengeWidget(Lozenge shape, HvBox box, bool boxed) : HvTObject("lozenge"), shape_(shape) {
    StoreBox({box.minX, box.minY}, {box.maxX - box.minX, box.maxY - box.minY});
    PutFlag(kHasBox, boxed);
  }
  HvPick Pick(HvPoint pos, HvPoint tolerance) override {
    if (!shape_.isUnder(pos, tolerance)) return {};
    SetTarget(this);
    return this;
  }
  void Draw() override {}
  std::int32_t Drag(HvPoint) override {
    ++drags;
    return 1;
  }
  int drags = 0;

 private:
  Lozenge shape_;
};

// Something that can be hit, and the gates that the pen must pass.
struct Spot {
  HvTObject* object = nullptr;  // null for the space of a solid group
  Lozenge shape;
  std::vector<int> through;  // of Forest::gates_
};

// The area for the widgets of a group.
struct Area {
  HvPoint centre{kTreeSide / 2, kTreeSide / 2};
  float spread = kTreeSide / 2;
};

struct Gate {
  bool open = true;
  bool boxed = true;
  float left = 0, right = 0, bottom = 0, top = 0;
  HvTObject* object = nullptr;
};

class Forest {
 public:
  Forest(Random& random, int widgets) : random_(random), left_(widgets) {
    while (left_ > 0)
      manager.AddObject(plant(nullptr, {}, {}));
    for (std::size_t i = 0; i < spots_.size(); ++i)
      finish(spots_[i]);
  }
  ~Forest() {
    manager.ClearChildren();
    // Groups before their children, which were created later.
    for (auto& object : objects_)
      if (auto* group = dynamic_cast<HvTGroup*>(object.get())) group->ClearChildren();
  }
  Forest(const Forest&) = delete;
  Forest& operator=(const Forest&) = delete;

  // The last painted spot under the pen; null for none.
  const Spot* topmost(HvPoint pos, HvPoint tolerance) const {
    const Spot* found = nullptr;
    for (const Spot& spot : spots_) {
      const auto lets = [&](int gate) { return passes(gates_[static_cast<std::size_t>(gate)], pos, tolerance); };
      if (!std::all_of(spot.through.begin(), spot.through.end(), lets)) continue;
      if (spot.object == nullptr || spot.shape.isUnder(pos, tolerance)) found = &spot;
    }
    return found;
  }
  // From the top of the tree to the widget itself.
  std::vector<HvTObject*> wayTo(const Spot& spot) const {
    std::vector<HvTObject*> way;
    for (const int gate : spot.through)
      way.push_back(gates_[static_cast<std::size_t>(gate)].object);
    return way;
  }

  HvTManager manager;

 private:
  static bool passes(const Gate& gate, HvPoint pos, HvPoint tolerance) {
    if (!gate.open) return false;
    return !gate.boxed || (gate.left <= pos.x + tolerance.x && pos.x - tolerance.x <= gate.right &&
                           gate.bottom <= pos.y + tolerance.y && pos.y - tolerance.y <= gate.top);
  }

  HvTObject* plant(HvTGroup* parent, const Area& area, const std::vector<int>& above) {
    --left_;
    const bool isGroup = above.size() < 6 && random_.oneIn(6);
    HvTObject* object = isGroup ? plantGroup(parent, somewhere(area), above) : plantLeaf(somewhere(area), above);
    object->SetVisibility(random_.oneIn(8) ? static_cast<std::uint32_t>(random_.within(0, 2)) : 3u);
    gates_[static_cast<std::size_t>(gateOf(object))].open = object->State() == 3u;
    if (!isGroup && parent != nullptr) object->SetParent(parent);
    return object;
  }

  HvPoint somewhere(const Area& area) {
    return area.centre +
           HvPoint{quarters(random_, -area.spread, area.spread), quarters(random_, -area.spread, area.spread)};
  }

  HvTObject* plantLeaf(HvPoint centre, std::vector<int> above) {
    const Lozenge shape{centre, quarters(random_, 1, 60)};
    const float half = quarters(random_, 0.25f, shape.reach * 1.5f);
    const HvBox box{centre.x - half, centre.x + half, centre.y - half, centre.y + half};
    const bool boxed = !random_.oneIn(250);
    objects_.push_back(std::make_unique<LozengeWidget>(shape, box, boxed));
    HvTObject* const leaf = objects_.back().get();
    // As the widget stores it: corner and extent.
    const HvBox stored = leaf->Box();
    above.push_back(static_cast<int>(gates_.size()));
    gates_.push_back({true, boxed, stored.minX, stored.maxX, stored.minY, stored.maxY, leaf});
    spots_.push_back({leaf, shape, above});
    return leaf;
  }

  // Attached to its parent before or after its children are added: the result must be the same.
  HvTObject* plantGroup(HvTGroup* parent, HvPoint centre, std::vector<int> above) {
    auto made = std::make_unique<HvTGroup>("group");
    HvTGroup* const group = made.get();
    objects_.push_back(std::move(made));
    const bool solid = random_.oneIn(8);
    group->SetGroupFlags(solid ? HvTGroup::kSolid : 0u);
    above.push_back(static_cast<int>(gates_.size()));
    gates_.push_back({true, true, 0, 0, 0, 0, group});
    if (solid) spots_.push_back({nullptr, {}, above});
    const bool early = random_.oneIn(2);
    if (early && parent != nullptr) group->SetParent(parent);
    const int children = std::min(left_, random_.within(0, 10));
    for (int i = 0; i < children && left_ > 0; ++i)
      plant(group, {centre, quarters(random_, 20, 150)}, above);
    if (!early && parent != nullptr) group->SetParent(parent);
    return group;
  }

  int gateOf(const HvTObject* object) const {
    const auto found = std::find_if(gates_.begin(), gates_.end(), [&](const Gate& g) { return g.object == object; });
    return static_cast<int>(found - gates_.begin());
  }

  // A group's box is that of all leaves and empty groups below it, or none if one of them has none.
  void finish(const Spot& spot) {
    for (const int gate : spot.through)
      if (dynamic_cast<HvTGroup*>(gates_[static_cast<std::size_t>(gate)].object) != nullptr) enclose(gate);
  }
  void enclose(int gate) {
    Gate& own = gates_[static_cast<std::size_t>(gate)];
    bool first = true;
    own.boxed = true;
    const auto take = [&](float x0, float x1, float y0, float y1) {
      own.left = first ? x0 : std::min(own.left, x0);
      own.right = first ? x1 : std::max(own.right, x1);
      own.bottom = first ? y0 : std::min(own.bottom, y0);
      own.top = first ? y1 : std::max(own.top, y1);
      first = false;
    };
    for (const Gate& other : gates_) {
      bool below = false;
      for (const HvTObject* up = other.object->Parent(); up != nullptr; up = up->Parent())
        below = below || up == own.object;
      if (!below) continue;
      const auto* group = dynamic_cast<const HvTGroup*>(other.object);
      if (group == nullptr) {
        own.boxed = own.boxed && other.boxed;
        take(other.left, other.right, other.bottom, other.top);
      } else if (group->Children().First() == nullptr) {
        take(0, 0, 0, 0);
      }
    }
    if (first) take(0, 0, 0, 0);
  }

  Random& random_;
  int left_;
  std::vector<std::unique_ptr<HvTObject>> objects_;
  std::vector<Gate> gates_;
  std::vector<Spot> spots_;
};

std::vector<HvTObject*> wayOf(const HvTManager& manager) {
  std::vector<HvTObject*> way;
  for (HvTObject* object = manager.Hit(); object != nullptr; object = object->Target()) {
    way.push_back(object);
    if (object->Target() == object) break;
  }
  return way;
}

TEST(RandomTree, HitsTheTopmostWidget) {
  constexpr int kWidgets = 1000;
  constexpr int kPoints = 10000 / test::kShareOfCases;
  int hits = 0;
  int swallowed = 0;
  int misses = 0;
  test::forRandomCases(6, [&](Random& random) {
    Forest forest(random, kWidgets);
    HvTManager& manager = forest.manager;
    const HvPoint tolerance{quarters(random, 0, 5), quarters(random, 0, 5)};
    manager.SetTolerance(tolerance);
    for (int i = 0; i < kPoints && !::testing::Test::HasFailure(); ++i) {
      const HvPoint pos{quarters(random, -20, kTreeSide + 20), quarters(random, -20, kTreeSide + 20)};
      const Spot* const spot = forest.topmost(pos, tolerance);
      HvTObject* const wanted = spot == nullptr ? nullptr : spot->object;
      spot == nullptr ? ++misses : wanted == nullptr ? ++swallowed : ++hits;
      // First move away, so that no move is too small to count.
      manager.PostMessage(HvMessage::OfPosition(kPenMoved, {-5000, -5000}));
      manager.PostMessage(HvMessage::OfPosition(kPenMoved, pos));
      ASSERT_EQ(manager.Hover(), wanted) << "at " << pos.x << ", " << pos.y;
      ASSERT_EQ(wayOf(manager), wanted == nullptr ? std::vector<HvTObject*>() : forest.wayTo(*spot));
      if (wanted == nullptr) continue;
      ASSERT_TRUE(wanted->IsHovered());
      if (!random.oneIn(4)) continue;
      const int before = static_cast<LozengeWidget*>(wanted)->drags;
      manager.PostMessage(HvMessage::OfPosition(kPenDown, pos));
      const HvPoint elsewhere{quarters(random, 0, kTreeSide), quarters(random, 0, kTreeSide)};
      manager.PostMessage(HvMessage::OfPosition(kPenMoved, elsewhere));
      ASSERT_EQ(static_cast<LozengeWidget*>(wanted)->drags, before + 1);
      ASSERT_TRUE(wanted->IsPressed());
      manager.PostMessage(HvMessage::OfPosition(kPenUp, elsewhere));
      ASSERT_FALSE(wanted->IsPressed());
    }
  });
  EXPECT_GT(hits, 1000 / test::kShareOfCases);
  EXPECT_GT(swallowed, 100 / test::kShareOfCases);
  EXPECT_GT(misses, 100 / test::kShareOfCases);
  RecordProperty("hits", hits);
  RecordProperty("swallowed", swallowed);
  RecordProperty("misses", misses);
}

}  // namespace
}  // namespace vblur
