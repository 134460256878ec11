// The numbers by which code refers to the module's texts, pictures, dialogs and controls. Numbers of texts that belong
// to a property are in the property table.
#pragma once

#include <cstdint>

namespace vblur::resources {

namespace strings {

inline constexpr std::int32_t kName = 1;
inline constexpr std::int32_t kDescription = 2;

// Titles and descriptions of the pages.
inline constexpr std::int32_t kFullBlurTitle = 3;
inline constexpr std::int32_t kFullBlurDescription = 4;
inline constexpr std::int32_t kTransitionBlurTitle = 5;
inline constexpr std::int32_t kTransitionBlurDescription = 6;
inline constexpr std::int32_t kHelpTitle = 7;
inline constexpr std::int32_t kHelpDescription = 8;
inline constexpr std::int32_t kFullCropTitle = 4996;
inline constexpr std::int32_t kFullCropDescription = 4997;
inline constexpr std::int32_t kTransitionTitle = 5498;
inline constexpr std::int32_t kTransitionDescription = 5499;

// Names and hints of controls without a property.
inline constexpr std::int32_t kFullBlurReset = 1050;
inline constexpr std::int32_t kFullBlurResetHint = 1051;
inline constexpr std::int32_t kTransitionBlurReset = 1052;
inline constexpr std::int32_t kTransitionBlurResetHint = 1053;
inline constexpr std::int32_t kOnlineHelpHint = 1056;  // empty
inline constexpr std::int32_t kSource = 1069;
inline constexpr std::int32_t kSourceHint = 1070;
inline constexpr std::int32_t kCropColour = 5020;
inline constexpr std::int32_t kCropColourHint = 5021;
inline constexpr std::int32_t kFullCropReset = 5034;
inline constexpr std::int32_t kFullCropResetHint = 5035;
inline constexpr std::int32_t kTransitionReset = 5515;
inline constexpr std::int32_t kTransitionResetHint = 5516;

// What the help page shows.
inline constexpr std::int32_t kHelpText = 1054;
inline constexpr std::int32_t kVersionLine = 1100;
inline constexpr std::int32_t kProductLine = 1101;
inline constexpr std::int32_t kOwnerLine = 1102;
inline constexpr std::int32_t kRightsLine = 1103;

// The viewer tool is registered with it; there is no such text.
inline constexpr std::int32_t kViewerToolDescription = 1071;

}  // namespace strings

namespace bitmaps {

inline constexpr std::int32_t kEffect = 102;
inline constexpr std::int32_t kLogo = 103;

}  // namespace bitmaps

inline constexpr std::int32_t kFullBlurDialog = 1;
inline constexpr std::int32_t kTransitionBlurDialog = 2;
inline constexpr std::int32_t kHelpDialog = 3;
inline constexpr std::int32_t kFullCropDialog = 50;
inline constexpr std::int32_t kTransitionDialog = 52;

// The controls of each dialog.

namespace full_blur {

inline constexpr std::int32_t kBlur = 1000;
inline constexpr std::int32_t kAspect = 1001;
inline constexpr std::int32_t kChannels = 1002;
inline constexpr std::int32_t kMethod = 1003;
inline constexpr std::int32_t kMixBack = 1004;
inline constexpr std::int32_t kBlend = 1005;
inline constexpr std::int32_t kEffectGain = 1006;
inline constexpr std::int32_t kSourceGain = 1007;
inline constexpr std::int32_t kReset = 1008;
inline constexpr std::int32_t kBlurLabel = 2000;
inline constexpr std::int32_t kAspectLabel = 2001;
inline constexpr std::int32_t kChannelsLabel = 2002;
inline constexpr std::int32_t kMethodLabel = 2003;
inline constexpr std::int32_t kBlendLabel = 2005;
inline constexpr std::int32_t kEffectGainLabel = 2006;
inline constexpr std::int32_t kSourceGainLabel = 2007;

}  // namespace full_blur

namespace transition_blur {

inline constexpr std::int32_t kBlur = 1009;
inline constexpr std::int32_t kAspect = 1010;
inline constexpr std::int32_t kChannels = 1011;
inline constexpr std::int32_t kMethod = 1012;
inline constexpr std::int32_t kReset = 1013;
inline constexpr std::int32_t kBlurLabel = 2009;
inline constexpr std::int32_t kAspectLabel = 2010;
inline constexpr std::int32_t kChannelsLabel = 2011;
inline constexpr std::int32_t kMethodLabel = 2012;

}  // namespace transition_blur

namespace help {

inline constexpr std::int32_t kHideOverlayControls = 1014;
inline constexpr std::int32_t kFrame = 1015;
inline constexpr std::int32_t kText = 1016;
inline constexpr std::int32_t kOnlineHelp = 1017;
inline constexpr std::int32_t kVersion = 1018;
inline constexpr std::int32_t kProduct = 1019;
inline constexpr std::int32_t kOwner = 1020;
inline constexpr std::int32_t kRights = 1021;

}  // namespace help

namespace full_crop {

inline constexpr std::int32_t kCropLeft = 5000;
inline constexpr std::int32_t kCropRight = 5001;
inline constexpr std::int32_t kCropBottom = 5002;
inline constexpr std::int32_t kCropTop = 5003;
inline constexpr std::int32_t kXEdgeMethod = 5004;
inline constexpr std::int32_t kYEdgeMethod = 5005;
inline constexpr std::int32_t kColourChip = 5006;
inline constexpr std::int32_t kColourGroup = 5007;
inline constexpr std::int32_t kRed = 5008;
inline constexpr std::int32_t kGreen = 5009;
inline constexpr std::int32_t kBlue = 5010;
inline constexpr std::int32_t kAlpha = 5011;
inline constexpr std::int32_t kDisplayCropped = 5012;
inline constexpr std::int32_t kReset = 5013;
inline constexpr std::int32_t kBlankCropped = 5020;  // in the page's control map; the dialog has no such control
inline constexpr std::int32_t kCropLeftLabel = 6000;
inline constexpr std::int32_t kCropRightLabel = 6001;
inline constexpr std::int32_t kCropBottomLabel = 6002;
inline constexpr std::int32_t kCropTopLabel = 6003;
inline constexpr std::int32_t kXEdgeMethodLabel = 6004;
inline constexpr std::int32_t kYEdgeMethodLabel = 6005;
inline constexpr std::int32_t kRedLabel = 6008;
inline constexpr std::int32_t kGreenLabel = 6009;
inline constexpr std::int32_t kBlueLabel = 6010;
inline constexpr std::int32_t kAlphaLabel = 6011;

}  // namespace full_crop

namespace transition {

inline constexpr std::int32_t kFinishFadingOutFirstClip = 5500;
inline constexpr std::int32_t kStartFadingInSecondClip = 5501;
inline constexpr std::int32_t kTransitionRamping = 5502;
inline constexpr std::int32_t kReset = 5503;
inline constexpr std::int32_t kEffectScaling = 5504;
inline constexpr std::int32_t kFinishFadingOutFirstClipLabel = 6500;
inline constexpr std::int32_t kStartFadingInSecondClipLabel = 6501;
inline constexpr std::int32_t kTransitionRampingLabel = 6502;
inline constexpr std::int32_t kEffectScalingLabel = 6504;

}  // namespace transition

}  // namespace vblur::resources
