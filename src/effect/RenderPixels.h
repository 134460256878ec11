// The stages of a frame, in their order, for one type of pixel.
#pragma once

#include "composite/ApplyCrop.h"
#include "effect/Blur.h"
#include "effect/FrameStages.h"
#include "effect/FrameTextures.h"
#include "effect/ProjectSizes.h"

namespace vblur {

template <class Pixel>
HRESULT Blur::RenderPixels(double time) {
  FrameTextures<Pixel> textures;
  WrapTextures(textures);
  if (crop.displayCropped != 0) {
    DisplayCropped(frame, textures.output, textures.source);
    if (crop.blankCropped != 0) BlankCropped(frame, textures.output, textures.source);
    return kOk;
  }
  frame.alphaAffected = 1;
  FirstPass(time, textures);
  if (frame.PollInterrupt() != 0) return kOk;
  SecondPass(time, textures);
  if (frame.PollInterrupt() == 0 && PutsMaskedChannelsBack()) {
    RestoreMaskedChannels(frame, textures.output, textures.source, masks_.red, masks_.green, masks_.blue, masks_.alpha);
  }
  if (frame.PollInterrupt() == 0 && effectKind == kKindPaint) {
    ApplyPaintMask(frame, textures.output, textures.source, textures.mask);
  }
  if (frame.PollInterrupt() == 0 && crop.blankCropped != 0) BlankCropped(frame, textures.output, textures.source);
  return kOk;
}

template <class Pixel>
void Blur::WrapTextures(FrameTextures<Pixel>& textures) {
  const PlaceRecord& input = frame.inputPlace;
  WrapImage(frame, textures.output, outputImage, frame.outputPlace.originX, frame.outputPlace.originY);
  WrapImage(frame, textures.source, inputImage, input.originX, input.originY);
  ReadImagePlacement(input2Image, frame.input2Place, coordMan, effectHost);
  WrapImage(frame, textures.source2, input2Image, frame.input2Place.originX, frame.input2Place.originY);
  ApplyCropToTexture(textures.source, frame.Crop());
  ApplyCropToTexture(textures.source2, frame.Crop());
  WrapImage(frame, textures.mask, maskImage, wrapAdd(maskOffsetX, input.originX), wrapAdd(maskOffsetY, input.originY));
}

// Clips of the same geometry are mixed, then blurred once.
template <class Pixel>
void Blur::FirstPass(double time, FrameTextures<Pixel>& textures) {
  if (!MixesClips() || frame.transitionTwoPass) {
    RunBlurStage(time, textures.output, textures.source);
    return;
  }
  HvTexture<Pixel, Rf> scratch;
  scratch.cloneShape(textures.source);
  if (scratch.allocationFailed != 0) return stopForRefusedMemory(&frame.interrupt);
  MixTransitionInputs(frame, scratch, textures.source, textures.source2);
  RunBlurStage(time, textures.output, scratch);
}

// Other clips are blurred one by one, then mixed.
template <class Pixel>
void Blur::SecondPass(double time, FrameTextures<Pixel>& textures) {
  if (!MixesClips() || !frame.transitionTwoPass) return;
  HvTexture<Pixel, Rf> scratch;
  scratch.cloneShape(textures.output);
  if (scratch.allocationFailed != 0) return stopForRefusedMemory(&frame.interrupt);
  if (transition.scaling == kCrossFade) {
    frame.transitionScale = 1.0f - RampValue(frame.transitionProgress, transition.ramping);
  }
  RunBlurStage(time, scratch, textures.source2);
  MixTransitionResults(frame, textures.output, scratch);
}

}  // namespace vblur
