// The history of an effect that refuses values, and that lacks properties.

#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "platform/CDSPropertyContainer.h"
#include "tests/host/pages/UndoHistoryTest.h"

namespace vblur::host {
namespace {

// Three properties of the table, and writes that may be refused.
class Refusing : public CDSPropertyContainer {
 public:
  using enum PropertyId;

  HRESULT GetStaticPropertyCount(std::int32_t*) override { return kFailed; }
  HRESULT AddAlias(const GUID&, const GUID&) override { return kFailed; }
  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override {
    const auto entry = [](PropertyId id, CDSPropertiesMapEntry::Member member) {
      const Property& property = PropertyOf(id);
      const auto capability = static_cast<std::int32_t>(property.capability);
      return CDSPropertiesMapEntry{{.id = property.guid, .capability = capability, .type = property.type}, member};
    };
    static const std::vector<CDSPropertiesMapEntry> entries = {
        entry(Blur, [](CDSBasePropertyContainer& c) -> void* { return &static_cast<Refusing&>(c).blur; }),
        entry(Aspect, [](CDSBasePropertyContainer& c) -> void* { return &static_cast<Refusing&>(c).aspect; }),
        entry(Blend, [](CDSBasePropertyContainer& c) -> void* { return &static_cast<Refusing&>(c).blend; })};
    static const CDSPropertiesMap own{nullptr, entries};
    *map = &own;
    return kOk;
  }
  HRESULT PutValue(const GUID& property, const DSVariant& value) override {
    return Refuses(property, value.number) ? kFailed : CDSPropertyContainer::PutValue(property, value);
  }
  HRESULT RemoveCurve(const GUID& property) override {
    return refusesCurves ? kFailed : CDSPropertyContainer::RemoveCurve(property);
  }
  bool Refuses(const GUID& property, double value) const {
    return property == IdOf(refused) && (value == refusedValue || refusesAll);
  }

  double blur = 1.0;
  double aspect = 2.0;
  double blend = 3.0;
  PropertyId refused = Aspect;
  double refusedValue = -1.0;
  bool refusesAll = false;
  bool refusesCurves = false;
};

class UndoRefusals : public ::testing::Test {
 protected:
  using enum PropertyId;

  // One step of all three.
  UndoRefusals() {
    history.BeginStep(u"All");
    Put(Blur, 10.0);
    Put(Aspect, 20.0);
    Put(Blend, 30.0);
    history.EndStep();
  }
  void Put(PropertyId id, double value) { EXPECT_EQ(effect->PutValue(IdOf(id), DSVariant::Of(value)), kOk); }
  std::array<double, 3> Values() const { return {effect->blur, effect->aspect, effect->blend}; }

  ComPtr<Refusing> effect = ComPtr<Refusing>::Own(new Refusing());
  UndoHistory history{*effect};
};

TEST_F(UndoRefusals, LacksTheOtherProperties) {
  EXPECT_EQ(history.UndoDepth(), 1u);
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Values(), (std::array{1.0, 2.0, 3.0}));
}

TEST_F(UndoRefusals, WritesBackWhatItCannotUndoWhole) {
  effect->refusedValue = 2.0;
  EXPECT_FALSE(history.Undo());
  EXPECT_EQ(Values(), (std::array{10.0, 20.0, 30.0}));
  EXPECT_EQ(history.UndoName(), "All");
  EXPECT_EQ(history.UndoDepth(), 1u);
  EXPECT_EQ(history.RedoDepth(), 0u);
  effect->refusedValue = 20.0;
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Values(), (std::array{1.0, 2.0, 3.0}));
  EXPECT_FALSE(history.Redo());
  EXPECT_EQ(Values(), (std::array{1.0, 2.0, 3.0}));
  EXPECT_EQ(history.UndoDepth(), 0u);
  EXPECT_EQ(history.RedoDepth(), 1u);
  effect->refusedValue = -1.0;
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(Values(), (std::array{10.0, 20.0, 30.0}));
}

TEST_F(UndoRefusals, RecordsWhatItCannotWriteBack) {
  history.BeginStep(nullptr);
  EXPECT_EQ(effect->PutCurve(IdOf(Aspect), {{{0.0, 1.0}}, DSInterpolation::Linear}), kOk);
  Put(Blend, 31.0);
  history.EndStep();
  // The blend goes back first. Then the aspect's curve stays, and the blend does not come again.
  effect->refusesCurves = true;
  Listener listener(*effect, [&](const GUID&) {
    effect->refused = Blend;
    effect->refusesAll = true;
  });
  EXPECT_FALSE(history.Undo());
  EXPECT_EQ(Values(), (std::array{10.0, 20.0, 30.0}));
  EXPECT_EQ(history.UndoDepth(), 3u);
  EXPECT_EQ(history.UndoName(), "Blend");
  effect->refusesAll = effect->refusesCurves = false;
  listener.answers = {};
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Values(), (std::array{10.0, 20.0, 31.0}));
  EXPECT_TRUE(history.Undo());
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Values(), (std::array{1.0, 2.0, 3.0}));
}

}  // namespace
}  // namespace vblur::host
