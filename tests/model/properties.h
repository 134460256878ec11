// The effect's properties as plain values at the time of a frame.
#pragma once

namespace model {

enum EffectScaling : int { kDontScale = 0, kFadeInAndOut = 1, kCrossFade = 2 };

struct Properties {
  double blur = 10.0;
  double aspect = 0.0;
  int channels = 1;
  int method = 0;
  int mixBack = 0;
  double blend = 50.0;
  double effectGain = 100.0;
  double sourceGain = 100.0;
  int hideOverlayControls = 0;
  int maskRed = 1;
  int maskGreen = 1;
  int maskBlue = 1;
  int maskAlpha = 1;
  double cropLeft = 0.0;
  double cropRight = 100.0;
  double cropBottom = 0.0;
  double cropTop = 100.0;
  int xEdgeMethod = 2;
  int yEdgeMethod = 2;
  double cropColourR = 0.0;
  double cropColourG = 0.0;
  double cropColourB = 0.0;
  double cropColourA = 0.0;  ///< stored and shown, never rendered
  int displayCropped = 0;
  int blankCropped = 0;
  double finishFadingOut = 100.0;
  double startFadingIn = 0.0;
  int transitionRamping = 3;
  int effectScaling = kFadeInAndOut;
};

}  // namespace model
