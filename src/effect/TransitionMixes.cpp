// The two ways of putting the clips of a transition together.
#include "composite/HvQuickMixer.h"
#include "effect/Blur.h"

namespace vblur {
namespace {

// Lifts the crop of a texture for as long as it lives, then puts box and origin back. The edge methods
// stay in force.
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

}  // namespace

template <class Pixel>
void Blur::MixTransition(HvTexture<Pixel, Rf>& result, const HvTexture<Pixel, Rf>& share,
                         const HvTexture<Pixel, Rf>* rest) {
  result.setOrigin(inputPlace.originX, inputPlace.originY);
  HvQuickMixer<Pixel, Rf, kTopOf<Pixel>> mixer;
  mixer.amount = transitionMix;
  mixer.interrupt = &interrupt;
  mixer.setFieldMode(ProcessorField());
  ScaledWindow().giveTo(mixer);
  mixer.run(&share, rest, &result);
}

template <class Pixel>
void Blur::MixTransitionInputs(HvTexture<Pixel, Rf>& result, HvTexture<Pixel, Rf>& first,
                               HvTexture<Pixel, Rf>& second) {
  const WholePicture wholeResult(result);
  const WholePicture wholeFirst(first);
  const WholePicture wholeSecond(second);
  MixTransition(result, second, &first);
}

template <class Pixel>
void Blur::MixTransitionResults(HvTexture<Pixel, Rf>& first, HvTexture<Pixel, Rf>& second) {
  const WholePicture wholeFirst(first);
  const WholePicture wholeSecond(second);
  MixTransition<Pixel>(first, second, nullptr);
}

template void Blur::MixTransitionInputs(HvTexture<R8, Rf>&, HvTexture<R8, Rf>&, HvTexture<R8, Rf>&);
template void Blur::MixTransitionInputs(HvTexture<R16, Rf>&, HvTexture<R16, Rf>&, HvTexture<R16, Rf>&);
template void Blur::MixTransitionResults(HvTexture<R8, Rf>&, HvTexture<R8, Rf>&);
template void Blur::MixTransitionResults(HvTexture<R16, Rf>&, HvTexture<R16, Rf>&);

}  // namespace vblur
