// The stages of a frame other than the filter, for one pixel type. Each takes the state of the frame.
#pragma once

#include <cstddef>
#include <cstdint>

#include "composite/BlankOutside.h"
#include "effect/FrameState.h"
#include "effect/FrameTextures.h"
#include "image/HvTexture.h"
#include "image/SimpleCopySampler.h"
#include "platform/IDSImage.h"

namespace vblur {

// Wraps a host's image, or one field of it, without copying. Empty for an image that is absent or not usable, or that
// has no memory.
template <class Texture>
void WrapImage(const FrameState& frame, Texture& texture, const IDSImage* image, std::int32_t originX,
               std::int32_t originY) {
  if (image == nullptr || image->IsUsable() != kOk) return texture.release();
  const DSPixelPair size = image->Size();
  auto* first = static_cast<std::byte*>(image->FirstPixel());
  if (first == nullptr) return texture.release();
  std::int64_t row = image->RowStep();
  if (row == 0) row = static_cast<std::int64_t>(size.x) * static_cast<std::int64_t>(sizeof(typename Texture::Pixel));
  if (!frame.RendersHalfHeight()) {
    texture.wrap(size.x, size.y, first);
    texture.stride = row;
  } else {
    texture.wrap(size.x, size.y / 2, first + (frame.fieldIndex == 2 ? row : 0));
    texture.stride = 2 * row;
    originY /= 2;
  }
  texture.setOrigin(originX, originY);
  texture.setWriteOrigin(originX, originY);
}

// Mixes the second clip over the first by transitionMix. The result has the first clip's shape.
template <class Pixel>
void MixTransitionInputs(FrameState& frame, HvTexture<Pixel, Rf>& result, HvTexture<Pixel, Rf>& first,
                         HvTexture<Pixel, Rf>& second);
// The same in place: the first is also the result.
template <class Pixel>
void MixTransitionResults(FrameState& frame, HvTexture<Pixel, Rf>& first, HvTexture<Pixel, Rf>& second);

// Copies the channels whose mask is 0 back from the source; alpha only if the frame writes it. Resets the source's
// crop.
template <class Pixel>
void RestoreMaskedChannels(FrameState& frame, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source,
                           std::int32_t maskRed, std::int32_t maskGreen, std::int32_t maskBlue, std::int32_t maskAlpha);
template <class Pixel, class MaskPixel, class MaskAccum>
void ApplyPaintMask(FrameState& frame, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source,
                    HvTexture<MaskPixel, MaskAccum>& mask);

template <class Pixel>
void BlankCropped(FrameState& frame, HvTexture<Pixel, Rf>& output, const HvTexture<Pixel, Rf>& source) {
  BlankOutside(output, source, frame.Crop(), frame.RegionWindow(), &frame.interrupt);
}

// Copies the cropped source to the output, extended by its edge methods.
template <class Pixel>
void DisplayCropped(FrameState& frame, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source) {
  SimpleCopySampler<Pixel, Rf> copy;
  copy.interrupt = &frame.interrupt;
  copy.setFieldMode(frame.ProcessorField());
  if (const auto region = frame.RegionWindow()) region->giveTo(copy);
  copy.process(&source, &output);
}

}  // namespace vblur
