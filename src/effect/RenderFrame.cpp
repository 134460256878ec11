// The host's render call: settles the state of the frame and hands it to the pixels' own type.
#include <algorithm>

#include "effect/Blur.h"
#include "effect/RenderPixels.h"
#include "image/Arithmetic.h"
#include "image/HvMemory.h"

namespace vblur {
namespace {

// The reason that a stop at the host's word gives.
constexpr std::int32_t kHostStopped = 10000;

std::int32_t AskExecuteContext(void* context, HvStateWord* state) {
  if (static_cast<IDSExecuteContext*>(context)->MayContinue() != 0) return 0;
  state->store(kHostStopped, std::memory_order_relaxed);
  return 1;
}

std::int64_t BytesOf(const IDSImage* image) {
  if (image == nullptr || image->IsUsable() != kOk) return 0;
  const GUID format = image->Format();
  const bool wide = format == MFIF_RGBA_S2_14 || format == MFIF_MASK_16;
  const bool colour = format == MFIF_RGBA_RAW_32 || format == MFIF_RGBA_S2_14;
  const DSPixelPair size = image->Size();
  return std::int64_t{size.x} * size.y * (colour ? 4 : 1) * (wide ? 2 : 1);
}

}  // namespace

std::int32_t PollInterrupt(HvInterruptRecord& interrupt) {
  return poll(&interrupt);
}

void Blur::ArmInterrupt() {
  interrupt.arm(executeContext, executeContext == nullptr ? nullptr : &AskExecuteContext);
}

void Blur::SettleField() {
  fieldIndex = hostField == 1 || hostField == 2 ? hostField : 0;
  fieldScale = RendersHalfHeight() ? 0.5f : 1.0f;
}

void Blur::EvaluateCrop(double time) {
  if (cropMode == kCropNone) return;
  const auto fraction = [&](PropertyId id, double plain) {
    return static_cast<float>(Evaluate(id, plain, time) / 100.0);
  };
  cropLeft = fraction(PropertyId::CropLeft, crop.left);
  cropRight = fraction(PropertyId::CropRight, crop.right);
  cropBottom = fraction(PropertyId::CropBottom, crop.bottom);
  cropTop = fraction(PropertyId::CropTop, crop.top);
  if (cropMode == kCropBox) return;
  const auto component = [&](PropertyId id, double plain) {
    return clampTo(static_cast<float>(Evaluate(id, plain, time)) / 100.0f, 0.0f, 1.0f);
  };
  cropColour.red = component(PropertyId::CropColourR, crop.colourR);
  cropColour.green = component(PropertyId::CropColourG, crop.colourG);
  cropColour.blue = component(PropertyId::CropColourB, crop.colourB);
  cropColour.alpha = 0.0f;
}

CropSettings Blur::CropOfFrame() const {
  return {cropMode, cropLeft, cropRight, cropBottom, cropTop, crop.xEdgeMethod, crop.yEdgeMethod, cropColour};
}

HRESULT Blur::RenderFrame(double time) {
  frameMemory_ = {};
  if (const HRESULT result = PrepareData(); result != kOk) return result;
  ArmInterrupt();
  SettleField();
  if (outputImage == nullptr) return kNullPointer;
  if (const HRESULT result = outputImage->IsUsable(); result != kOk) return result;
  SettleRegion();
  blurSize_ = GetBlurSize(time);
  EvaluateCrop(time);
  ReadImagePlacement(input2Image, input2Place);
  UpdateTransition(time);
  ReportPlaces();

  HvMemoryAccount account;
  const HvMemoryScope scope(&account);
  const HRESULT result = RenderSettledFrame(time);
  frameMemory_ = {BytesOf(outputImage) + BytesOf(inputImage) + BytesOf(input2Image) + BytesOf(maskImage),
                  account.peak()};
  return result;
}

HRESULT Blur::RenderSettledFrame(double time) {
  const GUID format = outputImage->Format();
  if (format == MFIF_RGBA_RAW_32) return RenderPixels<R8>(time);
  if (format == MFIF_RGBA_S2_14) return RenderPixels<R16>(time);
  return kOk;
}

}  // namespace vblur
