#include "host/properties/PropertyText.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

const Property& kBlur = PropertyOf(PropertyId::Blur);
const Property& kChannels = PropertyOf(PropertyId::Channels);
const Property& kMethod = PropertyOf(PropertyId::Method);
const Property& kMaskRed = PropertyOf(PropertyId::MaskRed);
const Property& kFadeOut = PropertyOf(PropertyId::FinishFadingOutFirstClip);

std::string ValueFailure(const Property& property, const std::string& text) {
  return UsageFailureOf([&] { ParseValue(property, text); });
}

std::string SettingFailure(const Property& property, const std::string& text) {
  return UsageFailureOf([&] { ParseSetting(property, text); });
}

TEST(PropertyText, FindsPropertiesByNameInAnyCase) {
  for (const Property& property : kProperties) {
    EXPECT_EQ(FindPropertyNamed(property.name), &property);
    EXPECT_EQ(FindPropertyWritten(property.name), &property);
    EXPECT_EQ(FindPropertyWritten(OptionName(property)), &property);
    EXPECT_EQ(&PropertyNamed(OptionName(property)), &property);
  }
  EXPECT_EQ(FindPropertyNamed("eFFECT gAIN"), &PropertyOf(PropertyId::EffectGain));
  EXPECT_EQ(FindPropertyNamed("method"), &kMethod);
  EXPECT_EQ(FindPropertyNamed("effect-gain"), nullptr);
  EXPECT_EQ(FindPropertyWritten("Effect-GAIN"), &PropertyOf(PropertyId::EffectGain));
  EXPECT_EQ(FindPropertyWritten("effectgain"), nullptr);
  EXPECT_EQ(FindPropertyNamed("Crop Color R"), &PropertyOf(PropertyId::CropColourR));
  EXPECT_EQ(&PropertyNamed("crop-color-a"), &PropertyOf(PropertyId::CropColourA));
}

TEST(PropertyText, SuggestsTheNearestName) {
  const auto failure = [](const char* name) { return UsageFailureOf([&] { PropertyNamed(name); }); };
  EXPECT_EQ(failure("Blurr"), "unknown property \"Blurr\"; did you mean \"Blur\"?");
  EXPECT_EQ(failure("mixback"), "unknown property \"mixback\"; did you mean \"Mix Back\"?");
  EXPECT_EQ(failure("red"), "unknown property \"red\"; did you mean \"Mask Red\"?");
  EXPECT_EQ(failure("qqqq"), "unknown property \"qqqq\"");
}

TEST(PropertyText, NamesAnOptionForEveryProperty) {
  EXPECT_EQ(OptionName(PropertyOf(PropertyId::EffectGain)), "effect-gain");
  EXPECT_EQ(OptionName(PropertyOf(PropertyId::MixBack)), "mix-back");
  std::set<std::string> names;
  for (const Property& property : kProperties)
    names.insert(OptionName(property));
  EXPECT_EQ(names.size(), kProperties.size());
}

TEST(PropertyText, ReadsNumbersBeyondTheControlRange) {
  EXPECT_EQ(ParseValue(kBlur, "24"), 24.0);
  EXPECT_EQ(ParseValue(kBlur, " +1.5e3 "), 1500.0);
  EXPECT_EQ(ParseValue(kBlur, "-5"), -5.0);
  EXPECT_EQ(ParseValue(kFadeOut, ".25"), 0.25);
}

TEST(PropertyText, RefusesWhatIsNotAFiniteNumber) {
  for (const std::string text : {"nan", "NaN", "inf", "-infinity", "1e999", "12px", "", "0x10", "+-3", "1 2"}) {
    EXPECT_EQ(ValueFailure(kBlur, text), "Blur: expected a finite number, found \"" + text + "\"");
    EXPECT_EQ(SettingFailure(kFadeOut, text),
              "Finish Fading Out First Clip: expected a finite number, found \"" + text + "\"");
  }
}

TEST(PropertyText, ReadsEveryEntryOfEveryListByTextAndByNumber) {
  for (const Property& property : kProperties) {
    for (std::size_t i = 0; i < property.entries.size(); ++i) {
      const auto value = static_cast<double>(i);
      EXPECT_EQ(ParseValue(property, property.entries[i]), value);
      EXPECT_EQ(ParseValue(property, std::to_string(i)), value);
      EXPECT_EQ(ParseValue(property, FormatValue(property, value)), value);
    }
  }
  EXPECT_EQ(ParseValue(kChannels, "lUMINANCE"), 7.0);
}

TEST(PropertyText, RefusesWhatIsNotInTheList) {
  for (const std::string text : {"Both", "2", "-1", "0.5", "nan", ""}) {
    EXPECT_EQ(ValueFailure(kMethod, text),
              "Method: expected one of Blur, Sharpen, or a whole number from 0 to 1, found \"" + text + "\"");
  }
  EXPECT_NE(ValueFailure(kChannels, "11").find("or a whole number from 0 to 10, found \"11\""), std::string::npos);
}

TEST(PropertyText, ReadsOnAndOffInEverySpelling) {
  for (const char* text : {"true", "ON", "yes", "1"})
    EXPECT_EQ(ParseValue(kMaskRed, text), 1.0) << text;
  for (const char* text : {"false", "Off", "no", "0"})
    EXPECT_EQ(ParseValue(kMaskRed, text), 0.0) << text;
  EXPECT_EQ(ValueFailure(kMaskRed, "2"), "Mask Red: expected true, on, yes or 1, or false, off, no or 0, found \"2\"");
}

TEST(PropertyText, ReadsKeys) {
  const auto setting = ParseSetting(kBlur, "0:0,47:80");
  EXPECT_EQ(std::get<Curve>(setting), (Curve{{{0, 0}, {47, 80}}, Interpolation::Linear}));
  EXPECT_EQ(std::get<Curve>(ParseSetting(kBlur, "Smooth: -1.5:2 , 3:-4")),
            (Curve{{{-1.5, 2}, {3, -4}}, Interpolation::Smooth}));
  EXPECT_EQ(std::get<Curve>(ParseSetting(kBlur, "hold:5:6")), (Curve{{{5, 6}}, Interpolation::Hold}));
  EXPECT_EQ(std::get<Curve>(ParseSetting(kBlur, "linear:5:6")), (Curve{{{5, 6}}, Interpolation::Linear}));
  EXPECT_EQ(std::get<double>(ParseSetting(kBlur, "24")), 24.0);
}

TEST(PropertyText, RefusesWrongKeys) {
  EXPECT_EQ(SettingFailure(kBlur, "0:1,5:2,5:3"), "Blur: key 3: expected a time after 5, found 5");
  EXPECT_EQ(SettingFailure(kBlur, "0:1,-5:2"), "Blur: key 2: expected a time after 0, found -5");
  EXPECT_EQ(SettingFailure(kBlur, "0:1,"), "Blur: key 2: expected time:value with two finite numbers, found \"\"");
  EXPECT_EQ(SettingFailure(kBlur, "0:nan"),
            "Blur: key 1: expected time:value with two finite numbers, found \"0:nan\"");
  EXPECT_EQ(SettingFailure(kBlur, "soft:0:1"),
            "Blur: key 1: expected time:value with two finite numbers, found \"soft:0:1\"");
  EXPECT_EQ(SettingFailure(kBlur, "hold:7"), "Blur: key 1: expected time:value with two finite numbers, found \"7\"");
  EXPECT_EQ(SettingFailure(kBlur, "10,5"), "Blur: expected a finite number or keys such as 0:10,24:50, found \"10,5\"");
  EXPECT_EQ(SettingFailure(kMethod, "0:Blur"),
            "Method: not an animated property, expected one of Blur, Sharpen, or a whole number from 0 to 1, "
            "found \"0:Blur\"");
  EXPECT_EQ(SettingFailure(kFadeOut, "0:1"),
            "Finish Fading Out First Clip: not an animated property, expected a finite number, found \"0:1\"");
}

TEST(PropertyText, FormatsWhatItReads) {
  EXPECT_EQ(FormatSetting(kBlur, 24.0), "24");
  EXPECT_EQ(FormatSetting(kBlur, Curve{{{0, 0}, {47, 80.5}}, Interpolation::Linear}), "0:0,47:80.5");
  EXPECT_EQ(FormatSetting(kBlur, Curve{{{-1, 2}}, Interpolation::Hold}), "hold:-1:2");
  EXPECT_EQ(FormatSetting(kChannels, 7.0), "Luminance");
  EXPECT_EQ(FormatSetting(kMaskRed, 0.0), "off");
  EXPECT_EQ(FormatValue(kMethod, 7.0), "7");
}

TEST(PropertyText, RandomSettingsComeBackBitForBit) {
  std::mt19937_64 random(11);
  const auto number = [&] {
    for (;;) {
      const std::uint64_t bits = random();
      double value = 0.0;
      std::memcpy(&value, &bits, sizeof value);
      if (std::isfinite(value)) return value;
    }
  };
  for (int i = 0; i < 3000; ++i) {
    Curve curve{{}, static_cast<Interpolation>(i % 3)};
    std::set<double> times;
    while (times.size() < 1 + random() % 4)
      times.insert(number());
    for (const double time : times)
      curve.keys.push_back({time, number()});
    EXPECT_EQ(std::get<Curve>(ParseSetting(kBlur, FormatSetting(kBlur, curve))), curve);
    const double value = number();
    EXPECT_EQ(std::get<double>(ParseSetting(kBlur, FormatSetting(kBlur, value))), value);
  }
}

TEST(PropertyText, AssignsByNameAndByOptionName) {
  PropertyStore store;
  ApplyAssignment(store, " Effect Gain = 0:100,24:50");
  ApplyAssignment(store, "mix-back=screen");
  EXPECT_EQ(store.ValueAt(PropertyOf(PropertyId::EffectGain).guid, 12.0), 75.0);
  EXPECT_EQ(store.ValueAt(PropertyOf(PropertyId::MixBack).guid, 0.0), 10.0);
  EXPECT_EQ(UsageFailureOf([&] { ApplyAssignment(store, "Blur"); }), "expected NAME=VALUE, found \"Blur\"");
  EXPECT_EQ(UsageFailureOf([&] { ApplyAssignment(store, "Blr=4"); }),
            "unknown property \"Blr\"; did you mean \"Blur\"?");
}

}  // namespace
}  // namespace vblur::host
