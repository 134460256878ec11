#include "resources/Strings.h"

#include <array>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "properties/PropertyTable.h"
#include "resources/Numbers.h"
#include "tests/support/TestModule.h"

namespace vblur::resources {
namespace {

// All of them.
const std::map<std::int32_t, std::string> kExpected = {
    {1, "V_Blur"},
    {2, "Halvern's Blur and Sharpen Effect"},
    {3, "V_Blur"},
    {4, "V_Blur's main PPG"},
    {5, "V_Blur"},
    {6, "V_Blur's main PPG"},
    {7, "Help"},
    {8, "Help and Copyright Property Page for V_Blur"},
    {1000, "Blur"},
    {1001, "Amount to blur by (in pixels)."},
    {1002, "Aspect"},
    {1003, "Aspect of the blur."},
    {1004, "Channels"},
    {1005, "Which channels to blur in the image."},
    {1006, "RGB"},
    {1007, "RGBA"},
    {1008, "Grey"},
    {1009, "Red"},
    {1010, "Green"},
    {1011, "Blue"},
    {1012, "Alpha"},
    {1013, "Luminance"},
    {1014, "Chroma"},
    {1015, "U"},
    {1016, "V"},
    {1017, "Method"},
    {1018, "Blur or Sharpen the Image."},
    {1019, "Blur"},
    {1020, "Sharpen"},
    {1021, "Method"},
    {1022, "How to mix back to the original image."},
    {1023, "None"},
    {1024, "Mix"},
    {1025, "Luminance"},
    {1026, "Chroma"},
    {1027, "Hue"},
    {1028, "Saturation"},
    {1029, "Value"},
    {1030, "Colour"},
    {1031, "Darken"},
    {1032, "Lighten"},
    {1033, "Screen"},
    {1034, "Multiply"},
    {1035, "Add"},
    {1036, "Add Over"},
    {1037, "Add Under"},
    {1038, "Subtract"},
    {1039, "Difference"},
    {1040, "Overlay"},
    {1041, "HardLight"},
    {1042, "Blend"},
    {1043, "Amount of blending between processed and original images (percentage)."},
    {1044, "Effect Gain"},
    {1045, "Gain on the processed image when blending (percentage)."},
    {1046, "Source Gain"},
    {1047, "Gain on the source image when blending (percentage)."},
    {1048, "Hide Overlay Controls"},
    {1049, "Turn overlay elements off and on."},
    {1050, "Reset"},
    {1051, "Reset this page's values to their defaults."},
    {1052, "Reset"},
    {1053, "Reset this page's values to their defaults."},
    {1054,
     "V_Blur can be used to blur or sharpen an image using a fast gaussian filter. The effect is sub-pixel accurate "
     "that can be animated smoothly over time. It can also be applied to a specific channel (including Y/U/V). The "
     "Aspect parameter is used to bias the blur in one dimension or the other.\n"},
    {1056, ""},
    {1061, "Red"},
    {1062, "Green"},
    {1063, "Blue"},
    {1064, "Alpha"},
    {1065, "Mask red channel."},
    {1066, "Mask green channel."},
    {1067, "Mask blue channel."},
    {1068, "Mask alpha channel."},
    {1069, "Source"},
    {1070, "Source"},
    {1100, "V_Blur " VBLUR_VERSION},
    {1101, "Halvern's Blur and Sharpen Effect"},
    {1102, "Copyright (c) Halvern"},
    {1103, "All rights reserved."},
    {4996, "Cropping"},
    {4997, "V_Wibble's main PPG (with edge methods)"},
    {5000, "Crop Left"},
    {5001, "Left crop boundary."},
    {5002, "Crop Right"},
    {5003, "Right crop boundary."},
    {5004, "Crop Bottom"},
    {5005, "Bottom crop boundary."},
    {5006, "Crop Top"},
    {5007, "Top crop boundary."},
    {5008, "X Edge Method"},
    {5009, "How to treat pixels outside the horizontal crops."},
    {5010, "Colour"},
    {5011, "Repeat"},
    {5012, "Reflect"},
    {5013, "Wrap"},
    {5014, "Y Edge Method"},
    {5015, "How to treat pixels outside the vertical crops."},
    {5016, "Colour"},
    {5017, "Repeat"},
    {5018, "Reflect"},
    {5019, "Wrap"},
    {5020, "Crop Colour"},
    {5021, "Colour to use off edges."},
    {5022, "Crop Colour R"},
    {5023, "Colour to use off edges."},
    {5024, "Crop Colour G"},
    {5025, "Colour to use off edges."},
    {5026, "Crop Colour B"},
    {5027, "Colour to use off edges."},
    {5028, "Crop Colour A"},
    {5029, "Colour to use off edges."},
    {5030, "Display Cropped"},
    {5031, "Render the cropped image instead of the effect."},
    {5032, "Blank Cropped"},
    {5033, "Blank the area outside the cropped region to black and transparent."},
    {5034, "Reset"},
    {5035, "Reset this page's values to their defaults."},
    {5498, "Transition"},
    {5499, "Transition PPG for Halvern DS Transitions"},
    {5500, "Finish Fading Out First Clip"},
    {5501, "When finish fading out the first clip (percentage of transition)."},
    {5502, "Start Fading In Second Clip"},
    {5503, "When start fading in the second clip (percentage of transition)."},
    {5504, "Transition Ramping"},
    {5505, "How to ramp the transition in and out."},
    {5506, "Linear"},
    {5507, "Ramp In"},
    {5508, "Ramp Out"},
    {5509, "Ramp In and Out"},
    {5510, "Effect Scaling"},
    {5511, "How to scale the effect through the transition."},
    {5512, "Don't Scale Effect"},
    {5513, "Fade Effect In And Out"},
    {5514, "Cross Fade Effect"},
    {5515, "Reset"},
    {5516, "Reset this page's values to their defaults."},
};

TEST(Strings, AreTheseAndNoOthers) {
  std::map<std::int32_t, std::string> strings;
  for (const ModuleString& string : Strings())
    EXPECT_TRUE(strings.emplace(string.id, string.text).second) << "two texts have the number " << string.id;
  for (const auto& [id, text] : kExpected)
    EXPECT_TRUE(strings.contains(id) && strings[id] == text) << id << ": " << strings[id];
  EXPECT_EQ(strings.size(), kExpected.size());
}

TEST(Strings, AreAscii) {
  for (const ModuleString& string : Strings()) {
    for (const char letter : string.text)
      EXPECT_TRUE(letter == '\n' || (letter >= ' ' && letter <= '~')) << string.id << ": " << int{letter};
  }
}

TEST(Strings, AreLoadedByNumber) {
  for (const auto& [id, text] : kExpected) {
    std::array<char16_t, 512> buffer{};
    EXPECT_EQ(LoadStringW(test::TestModule(), id, buffer.data(), 512), static_cast<std::int32_t>(text.size())) << id;
    EXPECT_EQ(std::u16string(buffer.data()), std::u16string(text.begin(), text.end())) << id;
  }
}

TEST(Strings, TheViewerToolHasNone) {
  std::array<char16_t, 8> buffer{};
  EXPECT_EQ(strings::kViewerToolDescription, 1071);
  EXPECT_EQ(LoadStringW(test::TestModule(), strings::kViewerToolDescription, buffer.data(), 8), 0);
}

}  // namespace
}  // namespace vblur::resources
