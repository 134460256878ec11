// The table of the effect's properties: ids, names, types, defaults, ranges, lists and hints. The parameters, the
// programs' options and help, the checks of a job and the module's texts are generated from it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "../platform/DsTypes.h"

namespace vblur {

// The properties in the order of the table; a value is an index into kProperties.
enum class PropertyId : std::uint8_t {
  Blur,
  Aspect,
  Channels,
  Method,
  MixBack,
  Blend,
  EffectGain,
  SourceGain,
  HideOverlayControls,
  MaskRed,
  MaskGreen,
  MaskBlue,
  MaskAlpha,
  CropLeft,
  CropRight,
  CropBottom,
  CropTop,
  XEdgeMethod,
  YEdgeMethod,
  CropColourR,
  CropColourG,
  CropColourB,
  CropColourA,
  DisplayCropped,
  BlankCropped,
  FinishFadingOutFirstClip,
  StartFadingInSecondClip,
  TransitionRamping,
  EffectScaling,
};

enum class PropertyControl : std::uint8_t {
  Number,  // a 64-bit float with a control range
  List,    // a whole number that selects an entry
  OnOff,   // 0 or 1
};

// How the host treats a property: an animated one has a value at each time, a plain one a single value.
enum class PropertyCapability : std::int16_t { Plain = 4, Animated = 5, PlainHidden = 532 };

struct Property {
  PropertyId id;
  GUID guid;
  // The text that the effect shows. Two properties are called "Method".
  std::string_view shownName;
  // A name of its own for every property: the shown name, but "Mix Back" for the second "Method" and
  // "Mask Red" to "Mask Alpha" for the four masks. Jobs and programs use it.
  std::string_view name;
  DSValueType type;
  PropertyControl control;
  PropertyCapability capability;
  double defaultValue;
  // The range of the number control, both ends included. The effect itself accepts other values and clamps them only
  // where a stage needs it.
  double minimum;
  double maximum;
  // The list's entries by stored value; empty for other controls.
  std::span<const std::string_view> entries;
  // String identifiers of the name and of the hint in the resources.
  std::int32_t nameString;
  std::int32_t hintString;
  std::string_view hint;

  constexpr bool IsAnimated() const { return capability == PropertyCapability::Animated; }
};

namespace property_lists {

inline constexpr std::string_view kChannels[] = {"RGB",   "RGBA",      "Grey",   "Red", "Green", "Blue",
                                                 "Alpha", "Luminance", "Chroma", "U",   "V"};
inline constexpr std::string_view kMethod[] = {"Blur", "Sharpen"};
inline constexpr std::string_view kMixBack[] = {"None",       "Mix",        "Luminance", "Chroma",   "Hue",
                                                "Saturation", "Value",      "Colour",    "Darken",   "Lighten",
                                                "Screen",     "Multiply",   "Add",       "Add Over", "Add Under",
                                                "Subtract",   "Difference", "Overlay",   "HardLight"};
inline constexpr std::string_view kEdgeMethod[] = {"Colour", "Repeat", "Reflect", "Wrap"};
inline constexpr std::string_view kTransitionRamping[] = {"Linear", "Ramp In", "Ramp Out", "Ramp In and Out"};
inline constexpr std::string_view kEffectScaling[] = {"Don't Scale Effect", "Fade Effect In And Out",
                                                      "Cross Fade Effect"};

// The kinds of row that the table has.
constexpr Property Number(PropertyId id, GUID guid, std::string_view name, PropertyCapability capability, double value,
                          double minimum, double maximum, std::int32_t nameString, std::string_view hint) {
  return {id,    guid,    name,    name, DSValueType::Float64, PropertyControl::Number, capability,
          value, minimum, maximum, {},   nameString,           nameString + 1,          hint};
}

constexpr Property List(PropertyId id, GUID guid, std::string_view shownName, std::string_view name, double value,
                        std::span<const std::string_view> entries, std::int32_t nameString, std::string_view hint) {
  return {id,
          guid,
          shownName,
          name,
          DSValueType::Integer32,
          PropertyControl::List,
          PropertyCapability::Plain,
          value,
          0.0,
          static_cast<double>(entries.size() - 1),
          entries,
          nameString,
          nameString + 1,
          hint};
}

constexpr Property OnOff(PropertyId id, GUID guid, std::string_view shownName, std::string_view name, DSValueType type,
                         PropertyCapability capability, double value, std::int32_t nameString, std::int32_t hintString,
                         std::string_view hint) {
  return {id,  guid, shownName,  name,       type, PropertyControl::OnOff, capability, value, 0.0,
          1.0, {},   nameString, hintString, hint};
}

}  // namespace property_lists

inline constexpr auto kProperties = [] {
  using namespace property_lists;
  using enum PropertyId;
  using enum PropertyCapability;
  constexpr auto kInteger = DSValueType::Integer32;
  constexpr auto kBoolean = DSValueType::Boolean32;
  return std::to_array<Property>({
      Number(PropertyId::Blur, MakeGuid("{9D2E3005-AE89-11D5-9414-0800690F2F3F}"), "Blur", Animated, 10.0, 0.0, 720.0,
             1000, "Amount to blur by (in pixels)."),
      Number(Aspect, MakeGuid("{9D2E3006-AE89-11D5-9414-0800690F2F3F}"), "Aspect", Animated, 0.0, -100.0, 100.0, 1002,
             "Aspect of the blur."),
      List(Channels, MakeGuid("{9D2E3007-AE89-11D5-9414-0800690F2F3F}"), "Channels", "Channels", 1.0, kChannels, 1004,
           "Which channels to blur in the image."),
      List(Method, MakeGuid("{9D2E3008-AE89-11D5-9414-0800690F2F3F}"), "Method", "Method", 0.0, kMethod, 1017,
           "Blur or Sharpen the Image."),
      List(MixBack, MakeGuid("{9D2E3009-AE89-11D5-9414-0800690F2F3F}"), "Method", "Mix Back", 0.0, kMixBack, 1021,
           "How to mix back to the original image."),
      Number(Blend, MakeGuid("{9D2E300A-AE89-11D5-9414-0800690F2F3F}"), "Blend", Animated, 50.0, 0.0, 100.0, 1042,
             "Amount of blending between processed and original images (percentage)."),
      Number(EffectGain, MakeGuid("{9D2E300B-AE89-11D5-9414-0800690F2F3F}"), "Effect Gain", Animated, 100.0, -100.0,
             500.0, 1044, "Gain on the processed image when blending (percentage)."),
      Number(SourceGain, MakeGuid("{9D2E300C-AE89-11D5-9414-0800690F2F3F}"), "Source Gain", Animated, 100.0, -100.0,
             500.0, 1046, "Gain on the source image when blending (percentage)."),
      OnOff(HideOverlayControls, MakeGuid("{9D2E300D-AE89-11D5-9414-0800690F2F3F}"), "Hide Overlay Controls",
            "Hide Overlay Controls", kBoolean, PlainHidden, 0.0, 1048, 1049, "Turn overlay elements off and on."),
      OnOff(MaskRed, MakeGuid("{A9962F51-7962-11D0-8AF7-00A024EE5780}"), "Red", "Mask Red", kInteger, Plain, 1.0, 1061,
            1065, "Mask red channel."),
      OnOff(MaskGreen, MakeGuid("{A9962F52-7962-11D0-8AF7-00A024EE5780}"), "Green", "Mask Green", kInteger, Plain, 1.0,
            1062, 1066, "Mask green channel."),
      OnOff(MaskBlue, MakeGuid("{A9962F53-7962-11D0-8AF7-00A024EE5780}"), "Blue", "Mask Blue", kInteger, Plain, 1.0,
            1063, 1067, "Mask blue channel."),
      OnOff(MaskAlpha, MakeGuid("{D5794982-786C-11D0-8AF5-00A024EE5780}"), "Alpha", "Mask Alpha", kInteger, Plain, 1.0,
            1064, 1068, "Mask alpha channel."),
      Number(CropLeft, MakeGuid("{F2A92C64-2302-11D3-AB91-0000E8D8077F}"), "Crop Left", Animated, 0.0, 0.0, 100.0, 5000,
             "Left crop boundary."),
      Number(CropRight, MakeGuid("{F2A92C65-2302-11D3-AB91-0000E8D8077F}"), "Crop Right", Animated, 100.0, 0.0, 100.0,
             5002, "Right crop boundary."),
      Number(CropBottom, MakeGuid("{F2A92C66-2302-11D3-AB91-0000E8D8077F}"), "Crop Bottom", Animated, 0.0, 0.0, 100.0,
             5004, "Bottom crop boundary."),
      Number(CropTop, MakeGuid("{F2A92C67-2302-11D3-AB91-0000E8D8077F}"), "Crop Top", Animated, 100.0, 0.0, 100.0, 5006,
             "Top crop boundary."),
      List(XEdgeMethod, MakeGuid("{F2A92C68-2302-11D3-AB91-0000E8D8077F}"), "X Edge Method", "X Edge Method", 2.0,
           kEdgeMethod, 5008, "How to treat pixels outside the horizontal crops."),
      List(YEdgeMethod, MakeGuid("{F2A92C69-2302-11D3-AB91-0000E8D8077F}"), "Y Edge Method", "Y Edge Method", 2.0,
           kEdgeMethod, 5014, "How to treat pixels outside the vertical crops."),
      Number(CropColourR, MakeGuid("{F2A92C6B-2302-11D3-AB91-0000E8D8077F}"), "Crop Colour R", Animated, 0.0, 0.0,
             100.0, 5022, "Colour to use off edges."),
      Number(CropColourG, MakeGuid("{F2A92C6C-2302-11D3-AB91-0000E8D8077F}"), "Crop Colour G", Animated, 0.0, 0.0,
             100.0, 5024, "Colour to use off edges."),
      Number(CropColourB, MakeGuid("{F2A92C6D-2302-11D3-AB91-0000E8D8077F}"), "Crop Colour B", Animated, 0.0, 0.0,
             100.0, 5026, "Colour to use off edges."),
      Number(CropColourA, MakeGuid("{F2A92C6E-2302-11D3-AB91-0000E8D8077F}"), "Crop Colour A", Animated, 0.0, 0.0,
             100.0, 5028, "Colour to use off edges."),
      OnOff(DisplayCropped, MakeGuid("{F2A92C6F-2302-11D3-AB91-0000E8D8077F}"), "Display Cropped", "Display Cropped",
            kBoolean, Plain, 0.0, 5030, 5031, "Render the cropped image instead of the effect."),
      OnOff(BlankCropped, MakeGuid("{F2A92C70-2302-11D3-AB91-0000E8D8077F}"), "Blank Cropped", "Blank Cropped",
            kBoolean, Plain, 0.0, 5032, 5033, "Blank the area outside the cropped region to black and transparent."),
      Number(FinishFadingOutFirstClip, MakeGuid("{9D2E3066-AE89-11D5-9414-0800690F2F3F}"),
             "Finish Fading Out First Clip", Plain, 100.0, 0.0, 100.0, 5500,
             "When finish fading out the first clip (percentage of transition)."),
      Number(StartFadingInSecondClip, MakeGuid("{9D2E3067-AE89-11D5-9414-0800690F2F3F}"), "Start Fading In Second Clip",
             Plain, 0.0, 0.0, 100.0, 5502, "When start fading in the second clip (percentage of transition)."),
      List(TransitionRamping, MakeGuid("{9D2E3068-AE89-11D5-9414-0800690F2F3F}"), "Transition Ramping",
           "Transition Ramping", 3.0, kTransitionRamping, 5504, "How to ramp the transition in and out."),
      List(EffectScaling, MakeGuid("{9D2E3069-AE89-11D5-9414-0800690F2F3F}"), "Effect Scaling", "Effect Scaling", 1.0,
           kEffectScaling, 5510, "How to scale the effect through the transition."),
  });
}();

constexpr const Property& PropertyOf(PropertyId id) {
  return kProperties[static_cast<std::size_t>(id)];
}

static_assert(kProperties.size() == 29);
static_assert(
    [] {
      for (std::size_t i = 0; i < kProperties.size(); ++i) {
        if (kProperties[i].id != static_cast<PropertyId>(i)) return false;
      }
      return true;
    }(),
    "a property stands at the index that its id names");

}  // namespace vblur
