#include "host/pages/NumberControl.h"

#include <cmath>
#include <limits>

#include "platform/ComPtr.h"
#include "tests/host/pages/RecordingPage.h"

namespace vblur::host {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

struct Number : OneControl<NumberControl> {
  explicit Number(std::string_view text = "Blur;class=dsnewnumberctrl;min=0;max=720", double value = 0.0)
      : OneControl(ModuleControlKind::Static, text) {
    control.SetValue(DSVariant::Of(value));
    Changes();
  }

  double Value() const { return control.Value(); }
};

// As pages find it.
ComPtr<IDSNumberControl> NumberOf(HWND window) {
  const ComPtr<IUnknown> kept(static_cast<IUnknown*>(GetPropW(window, kControlInterface)));
  return kept.As<IDSNumberControl>();
}

HRESULT SetRange(Number& number, double minimum, double maximum) {
  return number.control.SetRange(DSVariant::Of(minimum), DSVariant::Of(maximum));
}

TEST(NumberControl, TakesCaptionAndRangeFromItsText) {
  Number number;
  EXPECT_EQ(TextOf(number.control.Handle()), u"Blur");
  EXPECT_EQ(number.control.Range().minimum, 0.0);
  EXPECT_EQ(number.control.Range().maximum, 720.0);
}

TEST(NumberControl, StartsNearZero) {
  const auto first = [](std::string_view text) {
    return OneControl<NumberControl>(ModuleControlKind::Static, text).control.ShownValue();
  };
  EXPECT_EQ(first(";class=dsnewnumberctrl;min=-100;max=500"), "0");
  EXPECT_EQ(first(";class=dsnewnumberctrl;min=5;max=500"), "5");
  EXPECT_EQ(first(";class=dsnewnumberctrl;min=-9;max=-0.5"), "-0.5");
  EXPECT_EQ(first(";class=dsnewnumberctrl;min=-9;max=-0"), "0");
}

TEST(NumberControl, TypingTheValueOfACurveTellsThePage) {
  Number number("Blur;class=dsnewnumberctrl;min=0;max=720", 40.0);
  EXPECT_EQ(number.control.Type("40"), std::nullopt);
  EXPECT_EQ(number.page.Taken(), Messages{});
  number.control.SetAnimationMark(DSAnimationMark::Animated);
  EXPECT_EQ(number.control.Type("40"), std::nullopt);
  EXPECT_EQ(number.page.Taken().size(), 1u) << "so that a key is set";
  number.control.SetAnimationMark(DSAnimationMark::Key);
  EXPECT_EQ(number.control.Type("40"), std::nullopt);
  EXPECT_EQ(number.page.Taken(), Messages{}) << "the key is there";
}

TEST(NumberControl, AScrubOfNoStepsChangesNothing) {
  Number number("Blur;class=dsnewnumberctrl;min=0;max=720", 12.123456789012345);
  number.control.BeginScrub();
  EXPECT_TRUE(number.control.Scrub(0));
  number.control.EndScrub();
  EXPECT_EQ(number.Value(), 12.123456789012345);
}

TEST(NumberControl, IsFoundAsANumberControlByItsWindow) {
  Number number;
  const auto found = NumberOf(number.control.Handle());
  ASSERT_TRUE(found);
  void* chip = &number;
  EXPECT_EQ(found->QueryInterface(IDSColourChip::kIid, &chip), kNoInterface);
  EXPECT_EQ(chip, nullptr);
  EXPECT_EQ(found->QueryInterface(IDSNumberControl::kIid, nullptr), kNullPointer);
  EXPECT_EQ(GetPropW(number.control.Handle(), u"DSCTLIFAC"), nullptr);
}

TEST(NumberControl, IsOwnedByItsDialog) {
  Number number;
  auto* const found = static_cast<IUnknown*>(GetPropW(number.control.Handle(), kControlInterface));
  void* counted = nullptr;
  EXPECT_EQ(found->QueryInterface(IDSNumberControl::kIid, &counted), kOk);
  EXPECT_EQ(found->Release(), 1u);
  EXPECT_EQ(found->AddRef(), 2u) << "the window's property is borrowed";
  EXPECT_EQ(found->Release(), 1u);
  EXPECT_EQ(found->Release(), 0u);
  EXPECT_EQ(number.control.Type("3"), std::nullopt) << "still there";
}

TEST(NumberControl, ShowsThePagesValueAsItIsWithoutAMessage) {
  Number number;
  const auto found = NumberOf(number.control.Handle());
  for (const auto& [value, shown] : {std::pair<double, std::string>{900.0, "900"},
                                     {-7.25, "-7.25"},
                                     {0.1, "0.1"},
                                     {20000.0 / 255.0, "78.4314"},
                                     {-1.0 / 3.0, "-0.3333"},
                                     {123456.78901, "123456.789"},
                                     {0.00004, "4e-05"},
                                     {1e300, "1e+300"},
                                     {kInf, "inf"},
                                     {-kInf, "-inf"},
                                     {kNan, "nan"}}) {
    EXPECT_EQ(found->SetValue(DSVariant::Of(value)), kOk);
    EXPECT_EQ(number.control.ShownValue(), shown);
    EXPECT_EQ(number.Changes(), 1u);
    EXPECT_EQ(found->SetValue(DSVariant::Of(value)), kOk);
    EXPECT_EQ(number.Changes(), 0u);
  }
  EXPECT_EQ(found->SetValue(DSVariant::Of(std::int32_t{12})), kOk);
  DSVariant read;
  EXPECT_EQ(found->GetValue(&read), kOk);
  EXPECT_EQ(read.type, DSValueType::Float64);
  EXPECT_EQ(read.number, 12.0);
  EXPECT_EQ(found->GetValue(nullptr), kNullPointer);
  EXPECT_EQ(number.page.Taken(), Messages{});
}

TEST(NumberControl, TakesAnotherRangeFromThePage) {
  Number number("Blur;class=dsnewnumberctrl;min=0;max=720", 500.0);
  const auto found = NumberOf(number.control.Handle());
  EXPECT_EQ(SetRange(number, -1.0, 100.0), kOk);
  EXPECT_EQ(number.Changes(), 1u);
  EXPECT_EQ(number.Value(), 500.0) << "the value stays";
  DSVariant minimum;
  DSVariant maximum;
  EXPECT_EQ(found->GetRange(&minimum, &maximum), kOk);
  EXPECT_EQ(minimum.AsNumber(), -1.0);
  EXPECT_EQ(maximum.AsNumber(), 100.0);
  EXPECT_EQ(found->GetRange(nullptr, &maximum), kNullPointer);
  EXPECT_EQ(found->GetRange(&minimum, nullptr), kNullPointer);
  EXPECT_EQ(number.control.Type("101"), std::nullopt);
  EXPECT_EQ(number.Value(), 100.0);
  EXPECT_EQ(SetRange(number, 3.0, 3.0), kOk);
}

TEST(NumberControl, RefusesARangeThatIsNone) {
  Number number;
  for (const auto& [minimum, maximum] : {std::pair{5.0, 4.0}, {kNan, 4.0}, {0.0, kNan}, {-kInf, 4.0}, {0.0, kInf}})
    EXPECT_EQ(SetRange(number, minimum, maximum), kWrongArgument);
  EXPECT_EQ(number.control.Range().minimum, 0.0);
  EXPECT_EQ(number.control.Range().maximum, 720.0);
  EXPECT_EQ(number.Changes(), 0u);
}

TEST(NumberControl, ShowsAnAnimationMark) {
  Number number;
  EXPECT_EQ(number.control.AnimationMark(), DSAnimationMark::None);
  EXPECT_EQ(number.control.SetAnimationMark(DSAnimationMark::Key), kOk);
  EXPECT_EQ(number.control.AnimationMark(), DSAnimationMark::Key);
  EXPECT_EQ(number.Changes(), 1u);
  EXPECT_EQ(number.control.SetAnimationMark(DSAnimationMark::Key), kOk);
  EXPECT_EQ(number.Changes(), 0u);
  EXPECT_EQ(number.control.SetAnimationMark(static_cast<DSAnimationMark>(3)), kWrongArgument);
  EXPECT_EQ(number.control.AnimationMark(), DSAnimationMark::Key);
}

TEST(NumberControl, TakesTypedNumbersForGood) {
  Number number;
  EXPECT_EQ(number.control.Type("24.5"), std::nullopt);
  EXPECT_EQ(number.Value(), 24.5);
  EXPECT_EQ(number.Changes(), 1u);
  EXPECT_EQ(number.page.Taken(), (Messages{"notify 5", "complete 5"}));
  EXPECT_EQ(number.control.Type("*= 2"), std::nullopt);
  EXPECT_EQ(number.Value(), 49.0);
  EXPECT_EQ(number.control.Type("50%"), std::nullopt);
  EXPECT_EQ(number.Value(), 360.0);
  number.page.Taken();
  EXPECT_EQ(number.control.Type("360"), std::nullopt);
  EXPECT_EQ(number.page.Taken(), Messages{}) << "it is the same";
  EXPECT_EQ(number.control.Type("1000"), std::nullopt);
  EXPECT_EQ(number.Value(), 720.0);
  EXPECT_EQ(number.control.Type("-1"), std::nullopt);
  EXPECT_EQ(number.Value(), 0.0);
}

TEST(NumberControl, KeepsItsValueWhenATypedTextIsNone) {
  Number number("Blur;class=dsnewnumberctrl;min=0;max=720", 30.0);
  EXPECT_EQ(number.control.Type("1,5"), "Blur: expected a decimal point and no commas, found \"1,5\"");
  EXPECT_EQ(number.control.Type("1/0"), "Blur: expected a finite result, found \"1/0\"");
  EXPECT_EQ(number.Value(), 30.0);
  EXPECT_EQ(number.Changes(), 0u);
  EXPECT_EQ(number.page.Taken(), Messages{});
  SendText(number.control.Handle(), WM_SETTEXT, u"Größe\n");
  EXPECT_EQ(number.control.Type("1,5"), "Größe : expected a decimal point and no commas, found \"1,5\"");
  Number nameless(";class=dsnewnumberctrl");
  EXPECT_EQ(nameless.control.Type("1,5"), "expected a decimal point and no commas, found \"1,5\"");
}

TEST(NumberControl, StepsByKeys) {
  Number number("Blur;class=dsnewnumberctrl;min=-100;max=500", 30.0);
  const auto after = [&](NumberKey key, NumberStep step = NumberStep::Normal) {
    EXPECT_TRUE(number.control.Key(key, step));
    EXPECT_EQ(number.page.Taken(), (Messages{"notify 5", "complete 5"}));
    return number.Value();
  };
  EXPECT_EQ(after(NumberKey::Up), 31.0);
  EXPECT_EQ(after(NumberKey::Down), 30.0);
  EXPECT_EQ(after(NumberKey::Up, NumberStep::Fine), 30.1);
  EXPECT_EQ(after(NumberKey::Up, NumberStep::Fine), 30.2);
  EXPECT_EQ(after(NumberKey::Up, NumberStep::Fine), 30.3) << "without dust";
  EXPECT_EQ(after(NumberKey::Down, NumberStep::Coarse), 20.3);
  EXPECT_EQ(after(NumberKey::Up, NumberStep::Coarse), 30.3);
  EXPECT_EQ(after(NumberKey::PageUp), 40.3);
  EXPECT_EQ(after(NumberKey::PageDown, NumberStep::Fine), 30.3);
  EXPECT_EQ(after(NumberKey::End), 500.0);
  EXPECT_EQ(after(NumberKey::Home), -100.0);
  EXPECT_TRUE(number.control.Key(NumberKey::Down));
  EXPECT_EQ(number.Value(), -100.0);
  EXPECT_EQ(number.page.Taken(), Messages{}) << "the end of the range";
}

TEST(NumberControl, ShowsZeroWithoutASign) {
  Number number(";class=dsnewnumberctrl;min=-0;max=9", 3.0);
  number.control.Type("-5");
  EXPECT_EQ(number.control.ShownValue(), "0");
  number.control.Type("3");
  number.control.Key(NumberKey::Home);
  EXPECT_EQ(number.control.ShownValue(), "0");
}

TEST(NumberControl, StepsIntoTheRange) {
  Number number("Blur;class=dsnewnumberctrl;min=5;max=720", 900.0);
  number.control.Key(NumberKey::Up);
  EXPECT_EQ(number.Value(), 720.0);
  number.control.SetValue(DSVariant::Of(kNan));
  number.control.Key(NumberKey::Up);
  EXPECT_EQ(number.Value(), 6.0);
  number.control.SetValue(DSVariant::Of(-kInf));
  number.control.Key(NumberKey::Up);
  EXPECT_EQ(number.Value(), 5.0);
}

TEST(NumberControl, ScrubsBetweenTwoMessages) {
  Number number("Blur;class=dsnewnumberctrl;min=0;max=720", 700.0);
  EXPECT_TRUE(number.control.BeginScrub());
  EXPECT_TRUE(number.control.IsScrubbing());
  EXPECT_EQ(number.page.Taken(), (Messages{"scrub 5 1"}));
  EXPECT_TRUE(number.control.Scrub(4));
  EXPECT_EQ(number.Value(), 704.0);
  EXPECT_TRUE(number.control.Scrub(-3, NumberStep::Fine));
  EXPECT_EQ(number.Value(), 703.7);
  EXPECT_TRUE(number.control.Scrub(0));
  EXPECT_TRUE(number.control.Scrub(2, NumberStep::Coarse));
  EXPECT_EQ(number.Value(), 720.0);
  EXPECT_TRUE(number.control.Scrub(2, NumberStep::Coarse));
  EXPECT_EQ(number.page.Taken(), (Messages{"notify 5", "notify 5", "notify 5"})) << "one for each change";
  EXPECT_TRUE(number.control.EndScrub());
  EXPECT_FALSE(number.control.IsScrubbing());
  EXPECT_EQ(number.page.Taken(), (Messages{"complete 5", "scrub 5 0"}));
  EXPECT_EQ(number.Value(), 720.0);
}

TEST(NumberControl, CompletesNoScrubWithoutAChange) {
  Number number;
  number.control.BeginScrub();
  EXPECT_TRUE(number.control.EndScrub());
  EXPECT_EQ(number.page.Taken(), (Messages{"scrub 5 1", "scrub 5 0"}));
  number.control.BeginScrub();
  EXPECT_TRUE(number.control.Scrub(-1));
  EXPECT_TRUE(number.control.EndScrub());
  EXPECT_EQ(number.page.Taken(), (Messages{"scrub 5 1", "scrub 5 0"})) << "the end of the range";
}

TEST(NumberControl, ShowsTheValueFromBeforeACancelledScrub) {
  Number number("Blur;class=dsnewnumberctrl;min=0;max=720", 900.0);
  number.control.BeginScrub();
  number.control.Scrub(-5);
  EXPECT_EQ(number.Value(), 720.0);
  number.page.Taken();
  EXPECT_TRUE(number.control.CancelScrub());
  EXPECT_EQ(number.Value(), 900.0) << "beyond the range as it was";
  EXPECT_EQ(number.page.Taken(), (Messages{"notify 5", "complete 5", "scrub 5 0"}));
  EXPECT_FALSE(number.control.IsScrubbing());
  number.control.BeginScrub();
  EXPECT_TRUE(number.control.CancelScrub());
  EXPECT_EQ(number.page.Taken(), (Messages{"scrub 5 1", "scrub 5 0"}));
  number.control.BeginScrub();
  number.control.SetValue(DSVariant::Of(3.0));
  EXPECT_TRUE(number.control.CancelScrub());
  EXPECT_EQ(number.Value(), 900.0);
  EXPECT_EQ(number.page.Taken(), (Messages{"scrub 5 1", "notify 5", "complete 5", "scrub 5 0"}));
}

TEST(NumberControl, TakesNothingElseDuringAScrub) {
  Number number;
  EXPECT_FALSE(number.control.Scrub(1));
  EXPECT_FALSE(number.control.EndScrub());
  EXPECT_FALSE(number.control.CancelScrub());
  EXPECT_EQ(number.page.Taken(), Messages{});
  number.control.BeginScrub();
  EXPECT_FALSE(number.control.BeginScrub());
  EXPECT_FALSE(number.control.Key(NumberKey::Up));
  EXPECT_EQ(number.control.Type("5"), "Blur: takes no input now");
  EXPECT_EQ(number.page.Taken(), (Messages{"scrub 5 1"}));
  EXPECT_EQ(number.Value(), 0.0);
}

TEST(NumberControl, EndsAScrubThatThePageHasStopped) {
  for (const bool cancels : {false, true}) {
    Number number;
    number.control.BeginScrub();
    number.page.onMessage = [&](const std::string& text) {
      if (text == "notify 5") number.control.Enable(false);
    };
    EXPECT_TRUE(number.control.Scrub(1));
    EXPECT_FALSE(number.control.Scrub(1));
    EXPECT_EQ(number.Value(), 1.0);
    number.page.Taken();
    EXPECT_TRUE(cancels ? number.control.CancelScrub() : number.control.EndScrub());
    EXPECT_EQ(number.page.Taken(),
              cancels ? (Messages{"notify 5", "complete 5", "scrub 5 0"}) : (Messages{"complete 5", "scrub 5 0"}));
    EXPECT_EQ(number.Value(), cancels ? 0.0 : 1.0);
  }
}

TEST(NumberControl, ScrubsOnFromAValueThatThePageShows) {
  Number number;
  number.control.BeginScrub();
  number.page.onMessage = [&](const std::string&) { number.control.SetValue(DSVariant::Of(50.0)); };
  number.control.Scrub(1);
  EXPECT_EQ(number.Value(), 50.0);
  number.page.onMessage = nullptr;
  number.control.Scrub(1);
  EXPECT_EQ(number.Value(), 51.0);
}

TEST(NumberControl, ShowsTheValueBeforeThePageIsTold) {
  Number number;
  double seen = 0.0;
  number.page.onMessage = [&](const std::string&) { seen = number.Value(); };
  number.control.Type("7");
  EXPECT_EQ(seen, 7.0);
}

TEST(NumberControl, TakesNoInputWhileDisabledOrHidden) {
  Number number;
  for (const bool hidden : {false, true}) {
    number.control.Enable(hidden);
    number.control.Show(!hidden);
    EXPECT_NE(number.control.Type("5"), std::nullopt);
    EXPECT_FALSE(number.control.Key(NumberKey::Up));
    EXPECT_FALSE(number.control.BeginScrub());
  }
  EXPECT_EQ(number.Value(), 0.0);
  EXPECT_EQ(number.page.Taken(), Messages{});
}

}  // namespace
}  // namespace vblur::host
