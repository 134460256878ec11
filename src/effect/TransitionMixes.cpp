// Mixes of a transition's clips: before and after the blur.
#include "composite/HvQuickMixer.h"
#include "effect/FrameStages.h"
#include "image/Arithmetic.h"

namespace vblur {
namespace {

// Resets a texture to the whole picture, and restores box and origin at the end of the scope. Edge methods stay.
class WholePicture {
 public:
  explicit WholePicture(HvTexIndexer& texture) : texture_(texture), saved_(texture) { texture.wholeBounds(); }
  ~WholePicture() {
    texture_.horizontal = saved_.horizontal;
    texture_.vertical = saved_.vertical;
  }
  WholePicture(const WholePicture&) = delete;
  WholePicture& operator=(const WholePicture&) = delete;

 private:
  HvTexIndexer& texture_;
  HvTexIndexer saved_;
};

// Mixes `share` over `rest` by transitionMix; null mixes it over the result in place.
template <class Pixel>
void MixTransition(FrameState& frame, HvTexture<Pixel, Rf>& result, const HvTexture<Pixel, Rf>& share,
                   const HvTexture<Pixel, Rf>* rest) {
  result.setOrigin(frame.inputPlace.originX, frame.inputPlace.originY);
  HvQuickMixer<Pixel, Rf, kTopOf<Pixel>> mixer;
  mixer.amount = frame.transitionMix;
  mixer.interrupt = &frame.interrupt;
  mixer.setFieldMode(frame.ProcessorField());
  frame.ScaledWindow().giveTo(mixer);
  mixer.run(&share, rest, &result);
}

}  // namespace

template <class Pixel>
void MixTransitionInputs(FrameState& frame, HvTexture<Pixel, Rf>& result, HvTexture<Pixel, Rf>& first,
                         HvTexture<Pixel, Rf>& second) {
  const WholePicture wholeResult(result);
  const WholePicture wholeFirst(first);
  const WholePicture wholeSecond(second);
  MixTransition(frame, result, second, &first);
}

template <class Pixel>
void MixTransitionResults(FrameState& frame, HvTexture<Pixel, Rf>& first, HvTexture<Pixel, Rf>& second) {
  const WholePicture wholeFirst(first);
  const WholePicture wholeSecond(second);
  MixTransition<Pixel>(frame, first, second, nullptr);
}

template void MixTransitionInputs(FrameState&, HvTexture<R8, Rf>&, HvTexture<R8, Rf>&, HvTexture<R8, Rf>&);
template void MixTransitionInputs(FrameState&, HvTexture<R16, Rf>&, HvTexture<R16, Rf>&, HvTexture<R16, Rf>&);
template void MixTransitionInputs(FrameState&, HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&);
template void MixTransitionResults(FrameState&, HvTexture<R8, Rf>&, HvTexture<R8, Rf>&);
template void MixTransitionResults(FrameState&, HvTexture<R16, Rf>&, HvTexture<R16, Rf>&);
template void MixTransitionResults(FrameState&, HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&);

}  // namespace vblur
