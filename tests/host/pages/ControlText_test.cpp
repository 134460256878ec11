#include "host/pages/ControlText.h"

#include <string>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

void ExpectNumber(std::string_view text, double minimum, double maximum) {
  const ControlText read = ReadControlText(text);
  EXPECT_EQ(read.kind, PageWindowKind::Number) << text;
  EXPECT_EQ(read.minimum, minimum) << text;
  EXPECT_EQ(read.maximum, maximum) << text;
}

TEST(ControlText, SaysCaptionClassAndRange) {
  EXPECT_EQ(ReadControlText("Effect Gain;class=dsnewnumberctrl;min=-100;max=500").caption, "Effect Gain");
  ExpectNumber("Effect Gain;class=dsnewnumberctrl;min=-100;max=500", -100.0, 500.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=0;max=720", 0.0, 720.0);
  ExpectNumber("Blur;MAX=0.5;min=-0.25;Class=DSNewNumberCtrl", -0.25, 0.5);
  const ControlText chip = ReadControlText(";class=dsnewcolorchipctrl;auto=1");
  EXPECT_EQ(chip.kind, PageWindowKind::ColourChip);
  EXPECT_EQ(chip.caption, "");
}

TEST(ControlText, OfAWindowOfAKnownClassNeedsNoClass) {
  const ControlText read = ReadControlText("Blur;min=2;max=9", PageWindowKind::Number);
  EXPECT_EQ(read.kind, PageWindowKind::Number);
  EXPECT_EQ(read.caption, "Blur");
  EXPECT_EQ(read.minimum, 2.0);
  EXPECT_EQ(read.maximum, 9.0);
  const ControlText chip = ReadControlText("Colour;class=dsnewnumberctrl", PageWindowKind::ColourChip);
  EXPECT_EQ(chip.kind, PageWindowKind::ColourChip);
  EXPECT_EQ(chip.caption, "Colour");
}

TEST(ControlText, OfAnotherClassIsALabelsWithAllOfIt) {
  for (const std::string_view text :
       {"Blur", "", ";", "a;b", "Blur;class=dsnewnumberctr", "Blur;class=", "Blur;class", "Blur;min=0;max=720",
        "class=dsnewnumberctrl", "Blur; class=dsnewnumberctrl", "Blur;class=dsnewnumberctrl;class=other"}) {
    const ControlText read = ReadControlText(text);
    EXPECT_EQ(read.kind, PageWindowKind::Label) << text;
    EXPECT_EQ(read.caption, text);
  }
}

TEST(ControlText, PassesOverWhatIsMalformed) {
  ExpectNumber("Blur;class=dsnewnumberctrl", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=;max=", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=a;max=7b", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=-5;max=1,5", -5.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=nan;max=inf", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;max=1e999", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;;=;==;min;max=7=;", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=200", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=9;max=3", 0.0, 100.0);
  ExpectNumber("Blur;class=dsnewnumberctrl;min=3;max=3", 3.0, 3.0);
  ExpectNumber(std::string(1'000'000, ';') + "class=dsnewnumberctrl;max=7", 0.0, 7.0);
}

}  // namespace
}  // namespace vblur::host
