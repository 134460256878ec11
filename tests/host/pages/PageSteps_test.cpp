// What a user does with a property page is one step of the history, through the host and this build's server.
#include <algorithm>

#include <gtest/gtest.h>

#include "properties/PageNames.h"
#include "tests/host/pages/PagedEffect.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

// Every property away from its default, half of the animated ones with keys beside the time and at it.
Job ChangedJob(EffectKind kind) {
  Job job = PagedEffect::JobOf(kind);
  double value = 3.0;
  for (const Property& property : kProperties) {
    value += 0.7;
    if (property.control == PropertyControl::OnOff) {
      job.properties.Set(property.guid, 1.0 - property.defaultValue);
    } else if (property.control == PropertyControl::List) {
      job.properties.Set(property.guid, property.defaultValue == 0.0 ? 1.0 : 0.0);
    } else if (property.IsAnimated() && static_cast<int>(property.id) % 2 == 0) {
      Curve curve{{{0.0, value}, {10.0, value * 2.0}}, Interpolation::Smooth};
      if (static_cast<int>(property.id) % 4 == 0) curve.keys.insert(curve.keys.begin() + 1, {5.0, 1.0});
      job.properties.Set(property.guid, curve);
    } else {
      job.properties.Set(property.guid, value);
    }
  }
  return job;
}

struct ResetCase {
  std::string_view page;
  EffectKind kind;
  std::vector<std::pair<const char*, double>> values;
};

const std::vector<ResetCase> kResets{
    {pages::kFullBlur,
     EffectKind::Filter,
     {{"Blur", 10},
      {"Aspect", 0},
      {"Channels", 1},
      {"Method", 0},
      {"Mix Back", 0},
      {"Blend", 50},
      {"Effect Gain", 100},
      {"Source Gain", 100}}},
    {pages::kTransitionBlur, EffectKind::Transition, {{"Blur", 10}, {"Aspect", 0}, {"Channels", 1}, {"Method", 0}}},
    {pages::kTransition,
     EffectKind::Transition,
     {{"Finish Fading Out First Clip", 100},
      {"Start Fading In Second Clip", 0},
      {"Transition Ramping", 3},
      {"Effect Scaling", 2}}},
    {pages::kCrop,
     EffectKind::Filter,
     {{"Crop Left", 0},
      {"Crop Right", 100},
      {"Crop Bottom", 0},
      {"Crop Top", 100},
      {"X Edge Method", 2},
      {"Y Edge Method", 2},
      {"Crop Colour R", 0},
      {"Crop Colour G", 0},
      {"Crop Colour B", 0},
      {"Crop Colour A", 0},
      {"Display Cropped", 0},
      {"Blank Cropped", 0}}},
};

TEST(PageSteps, ResetIsOneStepWhoseUndoRestoresAllToTheBit) {
  constexpr double kTime = 5.0;
  for (const ResetCase& reset : kResets) {
    SCOPED_TRACE(reset.page);
    PagedEffect user(ChangedJob(reset.kind), kTime);
    user.Do("show " + std::string(reset.page));
    const HeldProperties before = user.Held();
    const std::string form = user.session.Form(false);
    ASSERT_EQ(user.History().UndoDepth(), 0u);

    user.Do("press Reset");
    EXPECT_EQ(user.History().UndoDepth(), 1u);
    EXPECT_EQ(user.History().UndoName(), "Reset");
    const HeldProperties after = user.Held();
    for (std::size_t i = 0; i < before.size(); ++i) {
      const Property& property = kProperties[i];
      const auto wanted = std::ranges::find(reset.values, property.name, &std::pair<const char*, double>::first);
      if (wanted == reset.values.end()) {
        EXPECT_EQ(after[i], before[i]) << property.name << " is not on the page";
        continue;
      }
      EXPECT_EQ(user.ValueAt(property.name, kTime), wanted->second) << property.name;
      if (before[i].keys.empty()) continue;
      EXPECT_EQ(after[i].plain, before[i].plain) << "a key, no plain value";
      EXPECT_EQ(after[i].keys.size(), 3u) << property.name << ": a key at the time, new or changed";
      EXPECT_EQ(after[i].keys[0], before[i].keys.front());
      EXPECT_EQ(after[i].keys[2], before[i].keys.back());
    }

    user.Do("undo");
    EXPECT_EQ(user.Held(), before);
    EXPECT_EQ(user.session.Form(false), form) << "the page follows";
    EXPECT_FALSE(user.History().CanUndo());
    user.Do("redo");
    EXPECT_EQ(user.Held(), after);
  }
}

TEST(PageSteps, AResetOfDefaultsIsNoStep) {
  PagedEffect user(EffectKind::Filter);
  user.Do("show crop\npress Reset\nshow FullBlurPPG\npress Reset");
  EXPECT_EQ(user.History().UndoDepth(), 0u);
}

struct StepCase {
  const char* page;
  const char* event;
  const char* name;
};

TEST(PageSteps, WhatAUserDoesIsOneStepWithItsName) {
  for (const StepCase& step :
       {StepCase{"FullBlurPPG", "set Blur 24", "Blur"},
        {"FullBlurPPG", "set Blur +=50%", "Blur"},
        {"FullBlurPPG", "scrub Aspect +5 -2 +1", "Aspect"},
        {"FullBlurPPG", "choose \"Mix Back\" Screen", "Mix Back"},
        {"FullBlurPPG", "choose Method Sharpen", "Method"},
        {"FullBlurPPG", "choose Channels Alpha", "Channels"},
        {"crop", "set \"Crop Left\" 5", "Crop Left"},
        {"crop", "scrub \"Crop Top\" coarse -3", "Crop Top"},
        {"crop", "choose \"X Edge Method\" Wrap", "X Edge Method"},
        {"crop", "tick \"Display Cropped Source\"", "Display Cropped"},
        {"crop", "pick 1,2,3", "Crop Colour R"},
        {"transition", "choose \"Effect Scaling\" 0", "Effect Scaling"},
        {"transition", "set \"Finish Fading Out First Clip\" 80", "Finish Fading Out First Clip"}}) {
    SCOPED_TRACE(step.event);
    const bool isTransition = std::string_view(step.page) == "transition";
    PagedEffect user(isTransition ? EffectKind::Transition : EffectKind::Filter);
    user.Do("show " + std::string(step.page));
    const HeldProperties before = user.Held();
    user.Do(step.event);
    const HeldProperties after = user.Held();
    EXPECT_NE(after, before);
    EXPECT_EQ(user.History().UndoDepth(), 1u);
    EXPECT_EQ(user.History().UndoName(), step.name);
    user.Do("undo");
    EXPECT_EQ(user.Held(), before);
    EXPECT_EQ(user.History().RedoName(), step.name);
    user.Do("redo");
    EXPECT_EQ(user.Held(), after);
  }
}

TEST(PageSteps, WhatChangesNothingIsNoStep) {
  PagedEffect user;
  user.Do(
      "show FullBlurPPG\nset Blur 10\nscrub Aspect 5 -5\nchoose Method Blur\nshow crop\nuntick \"Display Cropped\"\n"
      "pick 0,0,0\nset \"Crop Left\" -20");
  EXPECT_EQ(user.History().UndoDepth(), 0u);
}

TEST(PageSteps, RedosLastUntilSomethingNewIsWritten) {
  PagedEffect user;
  user.Do("show FullBlurPPG\nset Blur 24\nset Aspect 5\npress Reset\nundo\nundo\nundo");
  EXPECT_EQ(user.History().RedoDepth(), 3u);
  user.Do("show crop\ntime 4\nset \"Crop Left\" 0\nshow FullBlurPPG");
  EXPECT_EQ(user.History().RedoDepth(), 3u) << "nothing is written";
  user.Do("redo\nredo");
  EXPECT_EQ(user.History().RedoName(), "Reset");
  EXPECT_EQ(user.Number("Aspect"), 5.0);
  user.Do("scrub Blur 1");
  EXPECT_FALSE(user.History().CanRedo());
  EXPECT_EQ(user.History().UndoDepth(), 3u);
}

TEST(PageSteps, NothingIsUndoneWhileANumberIsScrubbed) {
  PagedEffect user;
  user.Do("show FullBlurPPG\nset Blur 24");
  auto& aspect = ControlOf<NumberControl>(user.Front(), "Aspect");
  aspect.BeginScrub();
  aspect.Scrub(7);
  const HeldProperties held = user.Held();
  EXPECT_FALSE(user.History().Undo());
  EXPECT_FALSE(user.History().Redo());
  EXPECT_FALSE(user.History().CanUndo());
  EXPECT_EQ(UsageFailureOf([&] { user.Do("undo"); }), "story.page:1: expected the pen to be up before undo");
  EXPECT_EQ(user.Held(), held);
  EXPECT_EQ(user.ValueAt("Aspect"), 7.0) << "the frame follows";
  aspect.Scrub(-2);
  aspect.EndScrub();
  EXPECT_EQ(user.History().UndoName(), "Aspect");
  EXPECT_EQ(user.History().UndoDepth(), 2u);
  user.Do("undo");
  EXPECT_EQ(user.ValueAt("Aspect"), 0.0);
  EXPECT_EQ(user.ValueAt("Blur"), 24.0);
}

TEST(PageSteps, ACancelledScrubIsNoStep) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  auto& blur = ControlOf<NumberControl>(user.Front(), "Blur");
  blur.BeginScrub();
  blur.Scrub(5);
  blur.CancelScrub();
  EXPECT_EQ(user.ValueAt("Blur"), 10.0);
  EXPECT_EQ(user.History().UndoDepth(), 0u);
}

TEST(PageSteps, AScrubEndsWithItsPage) {
  PagedEffect user;
  user.Do("show FullBlurPPG");
  auto& blur = ControlOf<NumberControl>(user.Front(), "Blur");
  blur.BeginScrub();
  blur.Scrub(5);
  user.session.Pages().Close("FullBlurPPG");
  EXPECT_EQ(user.ValueAt("Blur"), 15.0);
  EXPECT_TRUE(user.History().CanUndo());
  user.Do("undo");
  EXPECT_EQ(user.ValueAt("Blur"), 10.0);
}

}  // namespace
}  // namespace vblur::host
