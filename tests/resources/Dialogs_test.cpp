#include "resources/Dialogs.h"

#include <algorithm>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "properties/PropertyTable.h"
#include "resources/NumberText.h"
#include "resources/Numbers.h"

namespace vblur::resources {
namespace {

constexpr std::uint32_t kText = 0x50000000;
constexpr std::uint32_t kHostControl = 0x50010000;
constexpr std::uint32_t kList = 0x50210003;
constexpr std::uint32_t kPushButton = 0x50010000;
constexpr std::uint32_t kCheckBox = 0x50010003;
constexpr std::uint32_t kGroup = 0x50000007;
constexpr std::uint32_t kBitmap = 0x5000000E;

using Kind = ModuleControlKind;

struct Row {
  std::int32_t id;
  Kind kind;
  std::string text;
  std::vector<std::int32_t> place;  // x, y, width, height
  std::uint32_t style;
  std::int32_t bitmap;

  bool operator==(const Row&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
  out << row.id << " kind " << static_cast<int>(row.kind) << " \"" << row.text << "\" at";
  for (const std::int32_t number : row.place)
    out << ' ' << number;
  return out << " style " << std::hex << row.style << std::dec << " bitmap " << row.bitmap;
}

Row LabelRow(std::int32_t id, const char* text, std::vector<std::int32_t> place) {
  return {id, Kind::Static, text, place, kText, 0};
}
Row NumberRow(std::int32_t id, const char* text, std::vector<std::int32_t> place) {
  return {id, Kind::Static, text, place, kHostControl, 0};
}
Row ListRow(std::int32_t id, std::vector<std::int32_t> place) {
  return {id, Kind::List, "", place, kList, 0};
}
Row ButtonRow(std::int32_t id, const char* text, std::vector<std::int32_t> place) {
  return {id, Kind::PushButton, text, place, kPushButton, 0};
}
Row CheckBoxRow(std::int32_t id, const char* text, std::vector<std::int32_t> place) {
  return {id, Kind::CheckBox, text, place, kCheckBox, 0};
}
Row GroupRow(std::int32_t id, const char* text, std::vector<std::int32_t> place) {
  return {id, Kind::Group, text, place, kGroup, 0};
}

const ModuleDialog* Find(std::int32_t id) {
  const auto found = std::ranges::find(Dialogs(), id, &ModuleDialog::id);
  return found == Dialogs().end() ? nullptr : &*found;
}

void ExpectControls(std::int32_t id, const std::vector<Row>& expected) {
  const ModuleDialog* dialog = Find(id);
  ASSERT_NE(dialog, nullptr);
  std::vector<Row> rows;
  for (const ModuleControl& control : dialog->controls)
    rows.push_back({control.id,
                    control.kind,
                    std::string(control.text),
                    {control.x, control.y, control.width, control.height},
                    control.style,
                    control.bitmap});
  ASSERT_EQ(rows.size(), expected.size());
  for (std::size_t i = 0; i < rows.size(); ++i)
    EXPECT_EQ(rows[i], expected[i]) << "control " << i;
}

TEST(Dialogs, AreFivePagesOfOneSizeAndFont) {
  std::vector<std::int32_t> ids;
  for (const ModuleDialog& dialog : Dialogs()) {
    ids.push_back(dialog.id);
    EXPECT_EQ(dialog.width, 190) << dialog.id;
    EXPECT_EQ(dialog.height, 160) << dialog.id;
    EXPECT_EQ(dialog.font, "Arial") << dialog.id;
    EXPECT_EQ(dialog.fontPoints, 11) << dialog.id;
    EXPECT_EQ(dialog.style, 0x40000440u) << dialog.id << ": a child without a title, hidden at first";
  }
  EXPECT_EQ(ids, (std::vector{1, 2, 3, 50, 52}));
  EXPECT_EQ(Find(51), nullptr);
}

TEST(Dialogs, FullBlur) {
  ExpectControls(1, {
                        LabelRow(2003, "Method", {8, 5, 39, 8}),
                        ListRow(1003, {8, 13, 82, 8}),
                        LabelRow(2002, "Channels", {100, 5, 39, 8}),
                        ListRow(1002, {100, 13, 82, 8}),
                        LabelRow(2000, "Blur", {17, 29, 39, 8}),
                        NumberRow(1000, "Blur;class=dsnewnumberctrl;min=0;max=720", {17, 38, 156, 12}),
                        LabelRow(2001, "Aspect", {17, 53, 39, 8}),
                        NumberRow(1001, "Aspect;class=dsnewnumberctrl;min=-100;max=100", {17, 62, 156, 12}),
                        GroupRow(-1, "Blending", {6, 87, 177, 55}),
                        ListRow(1004, {10, 104, 82, 8}),
                        LabelRow(2005, "Blend", {101, 94, 50, 8}),
                        NumberRow(1005, "Blend;class=dsnewnumberctrl;min=0;max=100", {98, 104, 82, 12}),
                        LabelRow(2006, "Effect Gain", {100, 118, 50, 8}),
                        NumberRow(1006, "Effect Gain;class=dsnewnumberctrl;min=-100;max=500", {97, 128, 82, 12}),
                        LabelRow(2007, "Source Gain", {14, 118, 50, 8}),
                        NumberRow(1007, "Source Gain;class=dsnewnumberctrl;min=-100;max=500", {11, 128, 82, 12}),
                        ButtonRow(1008, "Reset", {73, 148, 44, 10}),
                    });
}

TEST(Dialogs, TransitionBlur) {
  ExpectControls(2, {
                        LabelRow(2012, "Method", {7, 13, 39, 8}),
                        ListRow(1012, {7, 21, 82, 8}),
                        LabelRow(2011, "Channels", {101, 13, 39, 8}),
                        ListRow(1011, {101, 21, 82, 8}),
                        LabelRow(2009, "Blur", {15, 46, 39, 8}),
                        NumberRow(1009, "Blur;class=dsnewnumberctrl;min=0;max=720", {15, 55, 159, 12}),
                        LabelRow(2010, "Aspect", {15, 75, 39, 8}),
                        NumberRow(1010, "Aspect;class=dsnewnumberctrl;min=-100;max=100", {15, 84, 159, 12}),
                        ButtonRow(1013, "Reset", {73, 148, 44, 10}),
                    });
}

TEST(Dialogs, Help) {
  ExpectControls(3, {
                        CheckBoxRow(1014, "Hide Overlay Controls", {54, 132, 81, 10}),
                        GroupRow(1015, "", {4, 0, 181, 130}),
                        LabelRow(1016, "", {9, 4, 173, 82}),
                        ButtonRow(1017, "Online Help", {62, 145, 66, 14}),
                        LabelRow(1018, "", {54, 92, 167, 8}),
                        LabelRow(1019, "", {54, 100, 126, 8}),
                        LabelRow(1020, "", {54, 108, 126, 8}),
                        LabelRow(1021, "", {54, 116, 126, 8}),
                        {-1, Kind::Picture, "", {9, 90, 39, 36}, kBitmap, 103},
                    });
}

TEST(Dialogs, FullCrop) {
  ExpectControls(50, {
                         CheckBoxRow(5012, "Display Cropped Source", {49, 2, 92, 10}),
                         LabelRow(6000, "Crop Left", {8, 14, 39, 8}),
                         NumberRow(5000, "Crop Left;class=dsnewnumberctrl;min=0;max=100", {8, 23, 82, 12}),
                         LabelRow(6001, "Crop Right", {101, 14, 39, 8}),
                         NumberRow(5001, "Crop Right;class=dsnewnumberctrl;min=0;max=100", {101, 23, 82, 12}),
                         LabelRow(6002, "Crop Bottom", {8, 36, 56, 8}),
                         NumberRow(5002, "Crop Bottom;class=dsnewnumberctrl;min=0;max=100", {8, 45, 82, 12}),
                         LabelRow(6003, "Crop Top", {101, 36, 39, 8}),
                         NumberRow(5003, "Crop Top;class=dsnewnumberctrl;min=0;max=100", {101, 45, 82, 12}),
                         LabelRow(6004, "X Edge Method", {8, 58, 67, 8}),
                         ListRow(5004, {8, 67, 82, 8}),
                         LabelRow(6005, "Y Edge Method", {101, 58, 67, 8}),
                         ListRow(5005, {101, 67, 82, 8}),
                         GroupRow(5007, "Crop Colour", {29, 84, 132, 62}),
                         NumberRow(5006, ";class=dsnewcolorchipctrl;auto=1", {36, 107, 24, 23}),
                         LabelRow(6008, "R", {150, 95, 8, 8}),
                         NumberRow(5008, "Crop Colour R;class=dsnewnumberctrl;min=0;max=100", {65, 93, 82, 12}),
                         LabelRow(6009, "G", {150, 108, 8, 8}),
                         NumberRow(5009, "Crop Colour G;class=dsnewnumberctrl;min=0;max=100", {65, 106, 82, 12}),
                         LabelRow(6010, "B", {150, 121, 8, 8}),
                         NumberRow(5010, "Crop Colour B;class=dsnewnumberctrl;min=0;max=100", {65, 119, 82, 12}),
                         LabelRow(6011, "A", {150, 134, 8, 8}),
                         NumberRow(5011, "Crop Colour A;class=dsnewnumberctrl;min=0;max=100", {65, 132, 82, 12}),
                         ButtonRow(5013, "Reset", {73, 148, 44, 10}),
                     });
}

TEST(Dialogs, Transition) {
  ExpectControls(
      52, {
              LabelRow(6504, "Effect Scaling", {40, 11, 92, 8}),
              ListRow(5504, {40, 22, 110, 8}),
              LabelRow(6500, "Finish Fading Out First Clip", {10, 43, 99, 8}),
              NumberRow(5500, "Finish Fading Out First Clip;class=dsnewnumberctrl;min=0;max=100", {10, 54, 170, 12}),
              LabelRow(6501, "Start Fading In Second Clip", {10, 75, 110, 8}),
              NumberRow(5501, "Start Fading In Second Clip;class=dsnewnumberctrl;min=0;max=100", {10, 86, 170, 12}),
              LabelRow(6502, "Transition Ramping", {40, 107, 85, 8}),
              ListRow(5502, {40, 118, 110, 8}),
              ButtonRow(5503, "Reset", {73, 148, 44, 10}),
          });
}

TEST(Dialogs, NoIdTwiceInADialog) {
  for (const ModuleDialog& dialog : Dialogs()) {
    std::set<std::int32_t> ids;
    for (const ModuleControl& control : dialog.controls) {
      if (control.id == ModuleControl::kNoId) continue;
      EXPECT_TRUE(ids.insert(control.id).second) << dialog.id << ": " << control.id;
    }
  }
}

TEST(Dialogs, ControlsLieInsideButTheVersionLine) {
  for (const ModuleDialog& dialog : Dialogs()) {
    for (const ModuleControl& control : dialog.controls) {
      EXPECT_GE(control.x, 0) << control.id;
      EXPECT_GE(control.y, 0) << control.id;
      EXPECT_GT(control.width, 0) << control.id;
      EXPECT_GT(control.height, 0) << control.id;
      const bool versionLine = dialog.id == kHelpDialog && control.id == help::kVersion;
      EXPECT_LE(control.x + control.width, versionLine ? dialog.width + 31 : dialog.width) << control.id;
      EXPECT_LE(control.y + control.height, dialog.height) << control.id;
    }
  }
}

// The crop page's map names it; nothing shows it.
TEST(Dialogs, BlankCroppedHasNoControl) {
  for (const ModuleControl& control : Find(kFullCropDialog)->controls)
    EXPECT_NE(control.id, full_crop::kBlankCropped);
}

// Control and property of every number, and the other way round: a number property without a control would be missed.
TEST(Dialogs, NumbersHaveNameAndRangeOfTheirProperty) {
  std::set<PropertyId> shown;
  for (const ModuleDialog& dialog : Dialogs()) {
    for (const ModuleControl& control : dialog.controls) {
      const std::size_t end = control.text.find(";class=dsnewnumberctrl;");
      if (end == std::string_view::npos) continue;
      const std::string name(control.text.substr(0, end));
      bool known = false;
      for (const Property& property : kProperties) {
        if (property.name != name) continue;
        known = true;
        shown.insert(property.id);
        EXPECT_EQ(control.text, name +
                                    ";class=dsnewnumberctrl;min=" + std::to_string(static_cast<int>(property.minimum)) +
                                    ";max=" + std::to_string(static_cast<int>(property.maximum)));
      }
      EXPECT_TRUE(known) << name;
    }
  }
  for (const Property& property : kProperties) {
    EXPECT_EQ(shown.contains(property.id), property.control == PropertyControl::Number) << property.name;
  }
}

TEST(Dialogs, BuiltTextsHoldNumbersOfEitherSign) {
  BuiltText text;
  for (const std::int32_t number : {0, 7, -7, 10, 720, -100, 2147483647, -2147483647 - 1}) {
    text.Append(number);
    text.Append(" ");
  }
  EXPECT_EQ(text.View(), "0 7 -7 10 720 -100 2147483647 -2147483648 ");
}

}  // namespace
}  // namespace vblur::resources
