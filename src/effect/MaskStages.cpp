// The mask stages: masked channels and the paint mask.
#include "composite/HvDsMaskFixer.h"
#include "composite/HvDsPaintCombiner.h"
#include "effect/FrameStages.h"
#include "image/Arithmetic.h"

namespace vblur {

template <class Pixel>
void RestoreMaskedChannels(FrameState& frame, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source,
                           std::int32_t maskRed, std::int32_t maskGreen, std::int32_t maskBlue,
                           std::int32_t maskAlpha) {
  const std::int32_t channels = (maskRed == 0 ? 1 : 0) | (maskGreen == 0 ? 2 : 0) | (maskBlue == 0 ? 4 : 0) |
                                (maskAlpha == 0 && frame.alphaAffected != 0 ? 8 : 0);
  if (channels == 0) return;
  HvDsMaskFixer<Pixel, Rf, kTopOf<Pixel>> fixer;
  fixer.interrupt = &frame.interrupt;
  fixer.channels = channels;
  fixer.setFieldMode(frame.ProcessorField());
  frame.ScaledWindow().giveTo(fixer);
  source.wholeBounds();
  fixer.process(&source, &output);
}

template <class Pixel, class MaskPixel, class MaskAccum>
void ApplyPaintMask(FrameState& frame, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source,
                    HvTexture<MaskPixel, MaskAccum>& mask) {
  HvTexture<Pixel, Rf> view;
  view.share(source);
  view.setBounds(0, kInt32Max, 0, kInt32Max);
  view.setEdgeMethods(kEdgeColour, kEdgeColour);
  HvDsPaintCombiner<Pixel, Rf, MaskPixel, MaskAccum> painter;
  painter.interrupt = &frame.interrupt;
  painter.setFieldMode(frame.ProcessorField());
  frame.ScaledWindow().giveTo(painter);
  painter.process(&view, &mask, &output);
}

template void RestoreMaskedChannels(FrameState&, HvTexture<R8, Rf>&, HvTexture<R8, Rf>&, std::int32_t, std::int32_t,
                                    std::int32_t, std::int32_t);
template void RestoreMaskedChannels(FrameState&, HvTexture<R16, Rf>&, HvTexture<R16, Rf>&, std::int32_t, std::int32_t,
                                    std::int32_t, std::int32_t);
template void RestoreMaskedChannels(FrameState&, HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&, std::int32_t, std::int32_t,
                                    std::int32_t, std::int32_t);
template void ApplyPaintMask(FrameState&, HvTexture<R8, Rf>&, HvTexture<R8, Rf>&, HvTexture<C8, Cf>&);
template void ApplyPaintMask(FrameState&, HvTexture<R16, Rf>&, HvTexture<R16, Rf>&, HvTexture<C16, Cf>&);
template void ApplyPaintMask(FrameState&, HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&, HvTexture<Cf, Cf>&);

}  // namespace vblur
