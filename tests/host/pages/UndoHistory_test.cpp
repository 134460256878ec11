#include "host/pages/UndoHistory.h"

#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/CDSPropertyContainer.h"
#include "platform/IDSImageEffect.h"
#include "tests/host/pages/HeldProperties.h"
#include "tests/support/TestServer.h"

namespace vblur::host {
namespace {

const GUID& IdOf(PropertyId property) {
  return PropertyOf(property).guid;
}

// Calls a function for every notice, and keeps the ids.
struct Listener : IDSPropertyNotify {
  explicit Listener(IDSProperties& properties, std::function<void(const GUID&)> answer = {})
      : answers(std::move(answer)), to(&properties) {
    to->Advise(this);
  }
  ~Listener() { to->Unadvise(this); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  void OnPropertyChanged(const GUID& property, const DSVariant*, std::uint32_t) override {
    notices.push_back(property);
    if (answers) answers(property);
  }

  std::vector<GUID> notices;
  std::function<void(const GUID&)> answers;
  ComPtr<IDSProperties> to;
};

class UndoHistoryOfAnEffect : public ::testing::Test {
 protected:
  using enum PropertyId;

  double Get(PropertyId property) {
    DSVariant value;
    EXPECT_EQ(properties->GetValue(IdOf(property), &value), kOk);
    return value.AsNumber();
  }
  void Put(PropertyId property, double value) {
    EXPECT_EQ(properties->PutValue(IdOf(property), DSVariant::Of(value)), kOk);
  }
  void PutCurve(PropertyId property, const DSCurve& curve) {
    EXPECT_EQ(properties->PutCurve(IdOf(property), curve), kOk);
  }
  // Nothing without a curve.
  std::optional<DSCurve> CurveOf(PropertyId property) {
    const DSCurve* curve = nullptr;
    EXPECT_GE(properties->GetCurve(IdOf(property), &curve), kOk);
    return curve == nullptr ? std::nullopt : std::optional(*curve);
  }
  // Undo and redo depth.
  std::pair<std::size_t, std::size_t> Depths() const { return {history.UndoDepth(), history.RedoDepth()}; }
  static std::pair<std::size_t, std::size_t> Are(std::size_t undos, std::size_t redos) { return {undos, redos}; }

  ComPtr<IDSImageEffect> effect = MakeEffect();
  ComPtr<IDSProperties> properties = effect.As<IDSProperties>();
  UndoHistory history{*properties};
};

TEST_F(UndoHistoryOfAnEffect, GivesValuesBackAndTakesThemAgain) {
  EXPECT_FALSE(history.CanUndo());
  EXPECT_FALSE(history.Undo());
  EXPECT_FALSE(history.Redo());
  EXPECT_EQ(history.UndoName(), "");
  EXPECT_EQ(history.RedoName(), "");
  Put(Blur, 24.0);
  Put(Channels, 7.0);
  Put(HideOverlayControls, 1.0);
  EXPECT_EQ(Depths(), Are(3, 0));
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Get(HideOverlayControls), 0.0);
  EXPECT_EQ(Get(Channels), 7.0);
  EXPECT_TRUE(history.CanUndo());
  EXPECT_TRUE(history.CanRedo());
  EXPECT_TRUE(history.Undo());
  EXPECT_TRUE(history.Undo());
  EXPECT_FALSE(history.CanUndo());
  EXPECT_FALSE(history.Undo());
  EXPECT_EQ(Get(Channels), 1.0);
  EXPECT_EQ(Get(Blur), 10.0);
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(history.Redo());
  EXPECT_FALSE(history.CanRedo());
  EXPECT_FALSE(history.Redo());
  EXPECT_EQ(Get(Blur), 24.0);
  EXPECT_EQ(Get(Channels), 7.0);
  EXPECT_EQ(Get(HideOverlayControls), 1.0);
  EXPECT_EQ(Depths(), Are(3, 0));
}

TEST_F(UndoHistoryOfAnEffect, NamesAStepAfterThePropertyUnlessItHasAName) {
  Put(MixBack, 3.0);
  EXPECT_EQ(history.UndoName(), "Mix Back");
  history.BeginStep(nullptr);
  Put(CropLeft, 5.0);
  Put(Blur, 5.0);
  history.EndStep();
  EXPECT_EQ(history.UndoName(), "Crop Left") << "the first that changed";
  history.BeginStep(u"");
  Put(Blur, 6.0);
  Put(Aspect, 1.0);
  Put(Blur, 5.0);
  history.EndStep();
  EXPECT_EQ(history.UndoName(), "Aspect") << "the other changed back";
  history.BeginStep(u"Gr\u00F6\u00DFe");
  history.BeginStep(u"within");
  Put(Blur, 7.0);
  history.EndStep();
  history.EndStep();
  EXPECT_EQ(history.UndoName(),
            "Gr\xC3\xB6\xC3\x9F"
            "e");
  history.BeginStep(nullptr);
  history.BeginStep(u"within");
  Put(MaskRed, 0.0);
  history.EndStep();
  history.EndStep();
  EXPECT_EQ(history.UndoName(), "Mask Red") << "the outermost step's name counts";
  history.Undo();
  EXPECT_EQ(history.RedoName(), "Mask Red");
  history.BeginStep(u"no change");
  history.EndStep();
  Put(Blur, 8.0);
  EXPECT_EQ(history.UndoName(), "Blur") << "a name goes with its step";
}

TEST_F(UndoHistoryOfAnEffect, GivesCurvesBackKeyByKey) {
  const DSCurve first{{{0.0, 10.0}, {4.5, -0.0}, {47.0, 30.0}}, DSInterpolation::Smooth};
  const DSCurve second{{{-0.0, 10.0}, {4.5, -0.0}, {47.0, 30.0}}, DSInterpolation::Smooth};
  const DSCurve third{second.keys, DSInterpolation::Hold};
  PutCurve(Blur, first);
  PutCurve(Blur, second);
  PutCurve(Blur, third);
  EXPECT_EQ(properties->PutValueAt(IdOf(Blur), 20.0, DSVariant::Of(99.0)), kOk);
  EXPECT_EQ(properties->RemoveCurve(IdOf(Blur)), kOk);
  EXPECT_EQ(Depths(), Are(5, 0)) << "0.0 and -0.0 are two times, for a key";
  history.Undo();
  EXPECT_EQ(CurveOf(Blur), (DSCurve{{{0.0, 10.0}, {4.5, 0.0}, {20.0, 99.0}, {47.0, 30.0}}, DSInterpolation::Hold}));
  history.Undo();
  EXPECT_EQ(CurveOf(Blur), third);
  history.Undo();
  EXPECT_EQ(CurveOf(Blur), second);
  EXPECT_TRUE(std::signbit(CurveOf(Blur)->keys[0].time));
  history.Undo();
  EXPECT_EQ(CurveOf(Blur), first);
  EXPECT_FALSE(std::signbit(CurveOf(Blur)->keys[0].time));
  EXPECT_TRUE(std::signbit(CurveOf(Blur)->keys[1].value));
  history.Undo();
  EXPECT_EQ(CurveOf(Blur), std::nullopt);
  EXPECT_EQ(Get(Blur), 10.0);
  history.Redo();
  EXPECT_EQ(CurveOf(Blur), first);
}

TEST_F(UndoHistoryOfAnEffect, KeepsPlainValueAndCurveOfAProperty) {
  const DSCurve curve{{{0.0, 1.0}, {9.0, 2.0}}, DSInterpolation::Linear};
  history.BeginStep(nullptr);
  PutCurve(CropTop, curve);
  Put(CropTop, 60.0);
  history.EndStep();
  const HeldProperties after = HeldBy(*properties);
  history.Undo();
  EXPECT_EQ(CurveOf(CropTop), std::nullopt);
  EXPECT_EQ(Get(CropTop), 100.0);
  history.Redo();
  EXPECT_EQ(HeldBy(*properties), after);
  EXPECT_EQ(CurveOf(CropTop), curve);
  EXPECT_EQ(Get(CropTop), 60.0);
}

TEST_F(UndoHistoryOfAnEffect, AStepIsWhatDiffersFromBeforeIt) {
  history.BeginStep(u"Drag");
  Put(Blur, 11.0);
  history.BeginStep(nullptr);
  Put(Blur, 12.0);
  Put(Blend, 1.0);
  EXPECT_FALSE(history.CanUndo());
  EXPECT_FALSE(history.Undo());
  history.EndStep();
  EXPECT_FALSE(history.Undo()) << "still open";
  Put(Blur, 13.0);
  history.EndStep();
  EXPECT_EQ(Depths(), Are(1, 0));
  history.Undo();
  EXPECT_EQ(Get(Blur), 10.0);
  EXPECT_EQ(Get(Blend), 50.0);
  history.BeginStep(nullptr);
  EXPECT_FALSE(history.CanRedo());
  EXPECT_FALSE(history.Redo());
  history.EndStep();
  history.Redo();
  EXPECT_EQ(Get(Blur), 13.0);
  EXPECT_EQ(Get(Blend), 1.0);
  history.EndStep();
  Put(Blur, 14.0);
  EXPECT_EQ(Depths(), Are(2, 0)) << "an end without a step is nothing";
}

TEST_F(UndoHistoryOfAnEffect, AStepWithoutAChangeIsNone) {
  Put(Aspect, 5.0);
  history.Undo();
  history.BeginStep(u"Nothing");
  history.EndStep();
  Put(Blur, 10.0);
  Put(Channels, 1.5);
  EXPECT_EQ(properties->RemoveCurve(IdOf(Blur)), kFalse);
  effect->SetDefaults();
  history.BeginStep(u"Back again");
  Put(Blur, 20.0);
  PutCurve(Blur, {{{0.0, 1.0}}, DSInterpolation::Linear});
  properties->RemoveCurve(IdOf(Blur));
  Put(Blur, 10.0);
  history.EndStep();
  EXPECT_EQ(Depths(), Are(0, 1)) << "the redo lives";
  history.BeginStep(u"Sign");
  Put(Aspect, -0.0);
  history.EndStep();
  EXPECT_EQ(Depths(), Are(1, 0)) << "-0.0 is not 0.0";
  Put(Aspect, 0.0);
  history.Undo();
  EXPECT_TRUE(std::signbit(Get(Aspect)));
  history.Undo();
  EXPECT_FALSE(std::signbit(Get(Aspect)));
}

TEST_F(UndoHistoryOfAnEffect, RedosLiveUntilSomethingNewIsRecorded) {
  Put(Blur, 1.0);
  Put(Blur, 2.0);
  history.Undo();
  history.Undo();
  EXPECT_EQ(Depths(), Are(0, 2));
  history.Redo();
  EXPECT_EQ(Depths(), Are(1, 1));
  Put(Aspect, 1.0);
  EXPECT_EQ(Depths(), Are(2, 0));
  EXPECT_EQ(history.RedoName(), "");
  history.Undo();
  history.Undo();
  EXPECT_EQ(Get(Blur), 10.0);
  EXPECT_EQ(Get(Aspect), 0.0);
}

TEST_F(UndoHistoryOfAnEffect, DefaultsAreOneStep) {
  for (const Property& property : kProperties)
    Put(property.id, property.defaultValue == 0.0 ? 1.0 : 0.0);
  const DSCurve curve{{{0.0, 1.0}, {9.0, 2.0}}, DSInterpolation::Hold};
  PutCurve(Blend, curve);
  const HeldProperties before = HeldBy(*properties);
  const std::size_t steps = history.UndoDepth();
  EXPECT_EQ(steps, kProperties.size() + 1);
  Listener listener(*properties);
  effect->SetDefaults();
  EXPECT_EQ(listener.notices, std::vector{GUID_ALL_PROPERTIES});
  EXPECT_EQ(Depths(), Are(steps + 1, 0));
  history.Undo();
  EXPECT_EQ(HeldBy(*properties), before);
  EXPECT_EQ(CurveOf(Blend), curve);
  history.Redo();
  EXPECT_EQ(HeldBy(*properties), HeldBy(*MakeEffect().As<IDSProperties>()));
}

TEST_F(UndoHistoryOfAnEffect, NotifiesOfWhatItWritesAlone) {
  history.BeginStep(nullptr);
  Put(Blur, 30.0);
  Put(Aspect, 3.0);
  Put(Aspect, 0.0);
  PutCurve(Blend, {{{0.0, 1.0}}, DSInterpolation::Linear});
  history.EndStep();
  Listener listener(*properties);
  history.Undo();
  EXPECT_EQ(listener.notices, (std::vector{IdOf(Blend), IdOf(Blur)})) << "the last change first";
  listener.notices.clear();
  history.Redo();
  EXPECT_EQ(listener.notices, (std::vector{IdOf(Blur), IdOf(Blend)}));
}

TEST_F(UndoHistoryOfAnEffect, AnAnswerToAChangeIsTheNextStep) {
  Listener listener(*properties, [&](const GUID& property) {
    if (property == IdOf(Blur)) Put(Aspect, Get(Blur) / 2.0);
  });
  Put(Blur, 40.0);
  EXPECT_EQ(Depths(), Are(2, 0));
  EXPECT_EQ(history.UndoName(), "Aspect");
  history.BeginStep(u"Both");
  Put(Blur, 50.0);
  history.EndStep();
  EXPECT_EQ(Depths(), Are(3, 0));
  history.Undo();
  EXPECT_EQ(Get(Blur), 40.0);
  EXPECT_EQ(Get(Aspect), 20.0);
  EXPECT_EQ(Depths(), Are(2, 1)) << "what the listener writes is what the undo leads to";
}

TEST_F(UndoHistoryOfAnEffect, AnAnswerToAnUndoIsAStepAfterIt) {
  Put(Blur, 40.0);
  Put(Channels, 3.0);
  history.Undo();
  Listener listener(*properties, [&](const GUID& property) {
    if (property == IdOf(Blur)) Put(Aspect, 7.0);
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.CanRedo());
    EXPECT_FALSE(history.Undo()) << "one at a time";
    EXPECT_FALSE(history.Redo());
    history.EndStep();  // of no step
  });
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Get(Blur), 10.0);
  EXPECT_EQ(Get(Aspect), 7.0);
  EXPECT_EQ(Depths(), Are(1, 0)) << "the redos are gone";
  EXPECT_EQ(history.UndoName(), "Aspect");
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blur), 10.0);
  listener.answers = [&](const GUID& property) {
    if (property == IdOf(Aspect) && Get(Aspect) != 6.5) Put(Aspect, 6.5);
  };
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(Get(Aspect), 6.5) << "of the property that is being written";
  EXPECT_EQ(Depths(), Are(2, 0));
  listener.answers = {};
  history.Undo();
  EXPECT_EQ(Get(Aspect), 7.0);
  history.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
}

TEST_F(UndoHistoryOfAnEffect, TheUndoOverwritesAnswersOnItsWay) {
  history.BeginStep(nullptr);
  Put(Aspect, 1.0);
  Put(Blur, 40.0);
  history.EndStep();
  Listener listener(*properties, [&](const GUID& property) {
    if (property == IdOf(Blur)) Put(Aspect, 7.0);
    if (property == IdOf(Blur)) PutCurve(Aspect, {{{0.0, 1.0}}, DSInterpolation::Linear});
  });
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Get(Aspect), 0.0) << "undone after the blur";
  EXPECT_EQ(CurveOf(Aspect), std::nullopt);
  EXPECT_EQ(Depths(), Are(0, 1));
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(Get(Aspect), 7.0) << "redone before the blur";
  EXPECT_NE(CurveOf(Aspect), std::nullopt);
  EXPECT_EQ(Depths(), Are(2, 0));
  listener.answers = {};
  history.Undo();
  EXPECT_EQ(Get(Aspect), 1.0);
  EXPECT_EQ(CurveOf(Aspect), std::nullopt);
  history.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blur), 10.0);
}

TEST_F(UndoHistoryOfAnEffect, AnAnswerToAnUndoMayBeAStepWithAName) {
  Put(Blur, 40.0);
  Listener listener(*properties, [&](const GUID& property) {
    if (property != IdOf(Blur)) return;
    history.BeginStep(u"Follow");
    Put(Aspect, 7.0);
    history.EndStep();
  });
  history.Undo();
  EXPECT_EQ(Depths(), Are(1, 0));
  EXPECT_EQ(history.UndoName(), "Follow");
  history.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  Put(Blur, 20.0);
  EXPECT_EQ(Depths(), Are(2, 0));

  listener.answers = [&](const GUID& property) {
    if (property == IdOf(Blur)) history.BeginStep(u"Stays open");
  };
  history.Undo();
  EXPECT_EQ(Depths(), Are(1, 1));
  history.Undo();
  EXPECT_EQ(Get(Blur), 10.0);
  EXPECT_FALSE(history.CanRedo()) << "a step is open";
  Put(Aspect, 9.0);
  EXPECT_EQ(Depths(), Are(0, 2));
  history.EndStep();
  EXPECT_EQ(Depths(), Are(1, 0));
  EXPECT_EQ(history.UndoName(), "Stays open");
}

TEST_F(UndoHistoryOfAnEffect, ManyAnswersToAnUndoAreOneStep) {
  Put(Blur, 40.0);
  Listener listener(*properties, [&](const GUID& property) {
    if (property != IdOf(Blur)) return;
    for (const auto& [name, answered] : {std::pair(u"", Channels), {u"First", Aspect}, {u"Second", Blend}}) {
      history.BeginStep(name);
      history.BeginStep(u"Within");
      Put(answered, 7.0);
      history.EndStep();
      history.EndStep();
    }
  });
  history.Undo();
  EXPECT_EQ(Depths(), Are(1, 0));
  EXPECT_EQ(history.UndoName(), "First");
  history.Undo();
  EXPECT_EQ(HeldBy(*properties), HeldBy(*MakeEffect().As<IDSProperties>()));
}

TEST_F(UndoHistoryOfAnEffect, AnAnswerToACurveMayBeThePlainValue) {
  PutCurve(Blur, {{{0.0, 1.0}}, DSInterpolation::Linear});
  bool hasAnswered = false;
  Listener listener(*properties, [&](const GUID&) {
    if (!std::exchange(hasAnswered, true)) Put(Blur, 7.0);
  });
  history.Undo();
  EXPECT_EQ(CurveOf(Blur), std::nullopt);
  EXPECT_EQ(Get(Blur), 7.0);
  EXPECT_EQ(Depths(), Are(1, 0));
  listener.answers = {};
  history.Undo();
  EXPECT_EQ(Get(Blur), 10.0);
}

// A history that was made after a listener, which the effect calls first, therefore.
class UndoHistoryAfterAListener : public UndoHistoryOfAnEffect {
 protected:
  Listener listener{*properties};
  UndoHistory later{*properties};
};

TEST_F(UndoHistoryAfterAListener, HasChangeAndAnswerInOneStep) {
  listener.answers = [&](const GUID& property) {
    if (property == IdOf(Blend)) Put(Aspect, 7.0);
  };
  Put(Blend, 40.0);
  EXPECT_EQ(later.UndoDepth(), 1u);
  EXPECT_EQ(later.UndoName(), "Aspect") << "the first of the table, of those that changed at once";
  listener.answers = {};
  later.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blend), 50.0);
}

TEST_F(UndoHistoryAfterAListener, TheAnswersOwnStepHasTheAnswerAlone) {
  listener.answers = [&](const GUID& property) {
    if (property != IdOf(Blend)) return;
    later.BeginStep(u"Follow");
    Put(Aspect, 7.0);
    later.EndStep();
  };
  Put(Blend, 40.0);
  EXPECT_EQ(later.UndoDepth(), 2u);
  EXPECT_EQ(later.UndoName(), "Follow");
  listener.answers = {};
  later.Undo();
  EXPECT_EQ(Get(Aspect), 0.0);
  EXPECT_EQ(Get(Blend), 40.0);
  EXPECT_EQ(later.UndoName(), "Blend");
}

TEST_F(UndoHistoryAfterAListener, AListenerMayUndoTheChangeOfWhichItIsTold) {
  bool undone = false;
  listener.answers = [&](const GUID&) {
    if (std::exchange(undone, true)) return;
    EXPECT_TRUE(later.Undo());
  };
  Put(Blend, 40.0);
  EXPECT_EQ(Get(Blend), 50.0);
  EXPECT_EQ(later.UndoDepth(), 0u);
  EXPECT_EQ(later.RedoName(), "Blend");
}

TEST(UndoHistory, KeepsTheEffect) {
  auto properties = MakeEffect().As<IDSProperties>();
  IDSProperties& effect = *properties;
  {
    UndoHistory history(effect);
    effect.PutValue(IdOf(PropertyId::Blur), DSVariant::Of(3.0));
    properties.reset();
    EXPECT_TRUE(history.Undo());
    DSVariant value;
    EXPECT_EQ(effect.GetValue(IdOf(PropertyId::Blur), &value), kOk);
    EXPECT_EQ(value.number, 10.0);
    EXPECT_EQ(effect.AddRef(), 2u);
    properties = ComPtr<IDSProperties>::Own(&effect);
  }
  EXPECT_EQ(properties->PutValue(IdOf(PropertyId::Blur), DSVariant::Of(3.0)), kOk) << "the history listens no more";
  EXPECT_EQ(properties->AddRef(), 2u);
  properties->Release();
}

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

class UndoHistoryOfARefusingEffect : public ::testing::Test {
 protected:
  using enum PropertyId;

  // One step of all three.
  UndoHistoryOfARefusingEffect() {
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

TEST_F(UndoHistoryOfARefusingEffect, LacksTheOtherProperties) {
  EXPECT_EQ(history.UndoDepth(), 1u);
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Values(), (std::array{1.0, 2.0, 3.0}));
}

TEST_F(UndoHistoryOfARefusingEffect, WritesBackWhatItCannotUndoWhole) {
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

TEST_F(UndoHistoryOfARefusingEffect, RecordsWhatItCannotWriteBack) {
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
