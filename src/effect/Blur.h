// The effect: parameters, and the road of a frame from the host's pictures to the last pixel of the
// output.
#pragma once

#include <cstdint>

#include "composite/ApplyCrop.h"
#include "composite/StageWindow.h"
#include "effect/BlurSize.h"
#include "effect/HvDsEffect.h"
#include "image/HvTexture.h"
#include "platform/CDSImageMIEffect.h"
#include "platform/IVBlurFacts.h"

namespace vblur {

// One render needs its object to itself; frames that render side by side need an object each.
class Blur : public HvDsEffect, public CDSImageMIEffect, public IVBlurFacts {
 public:
  // The size of the blur at a time: horizontal and vertical, in pixels of the picture being rendered.
  virtual BlurSize GetBlurSize(double time);

  // All parameters as a new effect has them.
  HRESULT SetDefaults();

  void SetEffectKind(std::int32_t kind) override { effectKind = kind; }
  HRESULT PutProperty(const GUID& property, double value) override;
  HRESULT GetProperty(const GUID& property, double& value) const override;
  HRESULT IsFormatSupported(const GUID& format) const override;
  HRESULT RenderFrame(double time) override;
  BlurSizeFacts DescribeBlurSize(double blur) const override;
  bool RanOutOfMemory() const override { return interrupt.memoryRefused.load(std::memory_order_relaxed) != 0; }

 private:
  // The member that holds a property's plain value: one of the two is set.
  struct Member {
    double* number = nullptr;
    std::int32_t* whole = nullptr;
  };
  Member MemberOf(PropertyId id);
  double Evaluate(PropertyId id, double plainValue, double time) const;

  // The steps of RenderFrame.
  void ArmInterrupt();
  void SetField();
  void SetRegion();
  void EvaluateCrop(double time);
  void UpdateTransition(double time);

  template <class Pixel>
  HRESULT RenderPixels(double time);
  template <class Pixel>
  void DisplayCropped(HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source);
  template <class Pixel>
  void FirstPass(double time, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source,
                 HvTexture<Pixel, Rf>& source2);
  template <class Pixel>
  void SecondPass(double time, HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source2);
  template <class Pixel>
  HRESULT RunBlurStage(double time, HvTexture<Pixel, Rf>& destination, HvTexture<Pixel, Rf>& source);
  template <class Pixel>
  void MixTransitionInputs(HvTexture<Pixel, Rf>& result, HvTexture<Pixel, Rf>& first, HvTexture<Pixel, Rf>& second);
  // The share of the transition's mix of one picture over the rest, which is the result itself when null.
  template <class Pixel>
  void MixTransition(HvTexture<Pixel, Rf>& result, const HvTexture<Pixel, Rf>& share, const HvTexture<Pixel, Rf>* rest);
  template <class Pixel>
  void MixTransitionResults(HvTexture<Pixel, Rf>& first, HvTexture<Pixel, Rf>& second);
  template <class Pixel>
  void RestoreMaskedChannels(HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source, std::int32_t maskRed,
                             std::int32_t maskGreen, std::int32_t maskBlue, std::int32_t maskAlpha);
  template <class Pixel, class MaskPixel, class MaskAccum>
  void ApplyPaintMask(HvTexture<Pixel, Rf>& output, HvTexture<Pixel, Rf>& source,
                      HvTexture<MaskPixel, MaskAccum>& mask);
  template <class Pixel>
  void BlankCropped(HvTexture<Pixel, Rf>& output, const HvTexture<Pixel, Rf>& source);

  template <class Texture>
  void WrapImage(Texture& texture, IDSImage* image, std::int32_t originX, std::int32_t originY) const;
  template <class Pixel>
  void ApplyCropToTexture(HvTexture<Pixel, Rf>& texture) const;

  CropSettings CropOfFrame() const;
  void ReadImagePlacement(const IDSImage* image, PlaceRecord& place) const;
  // User size over world size, Y: 1.0, or 0.0 for a placement, when it cannot be read. A placement
  // wants all four keys readable.
  double UserToWorldRatio() const;
  double PlacementRatio() const;
  BlurSizeParts SizeParts(double time) const;
  BlurSize FilterRadius(double time) const;

  bool MixesClips() const { return effectKind == kKindTransition && transitionMixesInputs == 1; }
  bool RendersHalfHeight() const { return fieldMode == kHalfHeightFields && fieldIndex != 0; }
  // What a processor is told of the field: nothing when the picture is the field.
  std::int32_t ProcessorField() const { return fieldMode == kFieldRows ? fieldIndex : 0; }
  // The region, its rows halved for a half-height field by integer division.
  StageWindow RegionWindow() const;
  // The same with rows scaled in 32-bit float and truncated, for the stages behind the filter.
  StageWindow ScaledWindow() const;

  BlurParameters blur_;
  MaskParameters masks_;
  BlurSize blurSize_;
};

// The interrupted code, polling first.
std::int32_t PollInterrupt(HvInterruptRecord& interrupt);

// A share of a transition under a ramp. Each ramp takes 0 to 0 and 1 to 1.
float RampValue(float value, std::int32_t ramping);

}  // namespace vblur
