// The stages of a frame, in their order, for one type of pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "composite/ApplyCrop.h"
#include "composite/BlankOutside.h"
#include "effect/Blur.h"
#include "effect/FrameTextures.h"
#include "image/SimpleCopySampler.h"

namespace vblur {

template <class Pixel>
HRESULT Blur::RenderPixels(double time) {
  FrameTextures<Pixel> frame;
  WrapImage(frame.output, outputImage, outputPlace.originX, outputPlace.originY);
  WrapImage(frame.source, inputImage, inputPlace.originX, inputPlace.originY);
  ReadImagePlacement(input2Image, input2Place);
  WrapImage(frame.source2, input2Image, input2Place.originX, input2Place.originY);
  ApplyCropToTexture(frame.source);
  ApplyCropToTexture(frame.source2);
  WrapImage(frame.mask, maskImage, wrapAdd(maskOffsetX, inputPlace.originX), wrapAdd(maskOffsetY, inputPlace.originY));

  if (crop.displayCropped != 0) {
    DisplayCropped(frame.output, frame.source);
    return kOk;
  }
  alphaAffected = 1;
  FirstPass(time, frame.output, frame.source, frame.source2);
  if (PollInterrupt(interrupt) != 0) return kOk;
  SecondPass(time, frame.output, frame.source2);
  if (PollInterrupt(interrupt) == 0 && effectKind != kKindTransition && effectKind != kKindGenerator &&
      (effectFlags & kFlagChannelMasks) != 0) {
    RestoreMaskedChannels(frame.output, frame.source, masks_.red, masks_.green, masks_.blue, masks_.alpha);
  }
  if (PollInterrupt(interrupt) == 0 && effectKind == kKindPaint) {
    ApplyPaintMask(frame.output, frame.source, frame.mask);
  }
  if (PollInterrupt(interrupt) == 0 && crop.blankCropped != 0) BlankCropped(frame.output, frame.source);
  return kOk;
}

// The cropped source in place of the effect: what lies beyond its box comes from its edge methods.
template <class Pixel>
void Blur::DisplayCropped(HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source) {
  SimpleCopySampler<Pixel, Rf> copy;
  copy.interrupt = &interrupt;
  copy.setFieldMode(ProcessorField());
  if (roiSet != 0) RegionWindow().giveTo(copy);
  copy.process(&source, &output);
  if (crop.blankCropped != 0) BlankCropped(output, source);
}

// Two clips of one geometry are mixed first and blurred once.
template <class Pixel>
void Blur::FirstPass(double time, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source,
                     HvTexture<Pixel, Rf>& source2) {
  if (!MixesClips() || transitionTwoPass) {
    RunBlurStage(time, output, source);
    return;
  }
  HvTexture<Pixel, Rf> scratch;
  scratch.cloneShape(source);
  if (scratch.allocationFailed != 0) return stopForRefusedMemory(&interrupt);
  MixTransitionInputs(scratch, source, source2);
  RunBlurStage(time, output, scratch);
}

// Clips that differ, or whose blur crosses over, are blurred one by one and mixed then.
template <class Pixel>
void Blur::SecondPass(double time, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source2) {
  if (!MixesClips() || !transitionTwoPass) return;
  HvTexture<Pixel, Rf> scratch;
  scratch.cloneShape(output);
  if (scratch.allocationFailed != 0) return stopForRefusedMemory(&interrupt);
  if (transition.scaling == kCrossFade) transitionScale = 1.0f - RampValue(transitionProgress, transition.ramping);
  RunBlurStage(time, scratch, source2);
  MixTransitionResults(output, scratch);
}

template <class Pixel>
void Blur::BlankCropped(HvTexture<Pixel, Rf>& output, const HvTexture<Pixel, Rf>& source) {
  std::optional<StageWindow> window;
  if (roiSet != 0) window = RegionWindow();
  BlankOutside(output, source, CropOfFrame(), window, &interrupt);
}

template <class Texture>
void Blur::WrapImage(Texture& texture, IDSImage* image, std::int32_t originX, std::int32_t originY) const {
  if (image == nullptr || image->IsUsable() != kOk) return texture.release();
  const DSPixelPair size = image->Size();
  auto* first = static_cast<std::byte*>(image->FirstPixel());
  if (!RendersHalfHeight()) {
    texture.wrap(size.x, size.y, first);
  } else {
    const std::int64_t row =
        static_cast<std::int64_t>(size.x) * static_cast<std::int64_t>(sizeof(typename Texture::Pixel));
    texture.wrap(size.x, size.y / 2, first + (fieldIndex == 2 ? row : 0));
    texture.stride = 2 * row;
    originY /= 2;
  }
  texture.setOrigin(originX, originY);
  texture.setWriteOrigin(originX, originY);
}

template <class Pixel>
void Blur::ApplyCropToTexture(HvTexture<Pixel, Rf>& texture) const {
  vblur::ApplyCropToTexture(texture, CropOfFrame());
}

}  // namespace vblur
