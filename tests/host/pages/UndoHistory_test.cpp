#include "host/pages/UndoHistory.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/pages/HeldProperties.h"
#include "tests/host/pages/UndoHistoryTest.h"

namespace vblur::host {
namespace {

class UndoHistoryOfAnEffect : public UndoHistoryTest {};

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

TEST_F(UndoHistoryOfAnEffect, ForgetsItsOldestStepsBeforeItHoldsTooMuch) {
  DSCurve curve;
  for (std::size_t i = 0; i < UndoHistory::kMostKeys / 8; ++i)
    curve.keys.push_back({static_cast<double>(i), 0.0});
  Put(Aspect, 5.0);
  PutCurve(Blur, curve);  // keys after
  for (int i = 1; i <= 4; ++i) {
    curve.keys.front().value = i;
    PutCurve(Blur, curve);  // before and after: twice as many
  }
  // 1 and 4 times 2 eighths are one too many.
  EXPECT_EQ(Depths(), Are(4, 0)) << "without that of Aspect, which goes first, and the curve's first";
  for (int i = 0; i < 4; ++i)
    EXPECT_TRUE(history.Undo());
  EXPECT_FALSE(history.Undo());
  EXPECT_EQ(CurveOf(Blur)->keys.front().value, 0.0);
  EXPECT_EQ(Get(Aspect), 5.0);
  for (int i = 0; i < 4; ++i)
    EXPECT_TRUE(history.Redo());
  EXPECT_EQ(CurveOf(Blur)->keys.front().value, 4.0);
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

}  // namespace
}  // namespace vblur::host
