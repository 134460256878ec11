// The host's render call: sets up the frame's state, then renders for the output's pixel type.
#include <algorithm>

#include "effect/Blur.h"
#include "effect/FrameFormats.h"
#include "effect/ProjectSizes.h"
#include "effect/RenderPixels.h"
#include "image/Arithmetic.h"
#include "image/HvMemory.h"

namespace vblur {
namespace {

// The interrupt reason when the host stops a render.
constexpr std::int32_t kHostStopped = 10000;

std::int32_t AskExecuteContext(void* context, HvStateWord* state) {
  if (static_cast<IDSExecuteContext*>(context)->MayContinue() != 0) return 0;
  state->store(kHostStopped, std::memory_order_relaxed);
  return 1;
}

std::int64_t BytesOf(const IDSImage* image) {
  if (image == nullptr || image->IsUsable() != kOk) return 0;
  const DSPixelPair size = image->Size();
  // No memory holds more, whatever a picture says of itself.
  if (size.x < 1 || size.y < 1 || size.x > FrameLimits::kLongestSide || size.y > FrameLimits::kLongestSide) return 0;
  return std::int64_t{size.x} * size.y * std::max(PixelBytesOf(image->Format()), 1);
}

}  // namespace

void Blur::ArmInterrupt() {
  frame.interrupt.arm(executeContext, executeContext == nullptr ? nullptr : &AskExecuteContext);
}

void Blur::EvaluateCrop(double time) {
  frame.xEdgeMethod = crop.xEdgeMethod;
  frame.yEdgeMethod = crop.yEdgeMethod;
  if (frame.cropMode == kCropNone) return;
  const auto fraction = [&](PropertyId id, double plain) {
    return static_cast<float>(Evaluate(id, plain, time) / 100.0);
  };
  frame.cropLeft = fraction(PropertyId::CropLeft, crop.left);
  frame.cropRight = fraction(PropertyId::CropRight, crop.right);
  frame.cropBottom = fraction(PropertyId::CropBottom, crop.bottom);
  frame.cropTop = fraction(PropertyId::CropTop, crop.top);
  if (frame.cropMode == kCropBox) return;
  const auto component = [&](PropertyId id, double plain) {
    return clampTo(static_cast<float>(Evaluate(id, plain, time)) / 100.0f, 0.0f, 1.0f);
  };
  frame.cropColour.red = component(PropertyId::CropColourR, crop.colourR);
  frame.cropColour.green = component(PropertyId::CropColourG, crop.colourG);
  frame.cropColour.blue = component(PropertyId::CropColourB, crop.colourB);
  frame.cropColour.alpha = 0.0f;
}

HRESULT Blur::RenderFrame(double time) {
  frameMemory_ = {};
  frame.refusal = {};
  if (const HRESULT result = PrepareData(); result != kOk) return result;
  ArmInterrupt();
  frame.SettleField(hostField);
  if (outputImage == nullptr) return kNullPointer;
  if (const HRESULT result = outputImage->IsUsable(); result != kOk) return result;
  SettleRegion();
  frame.blurSize = GetBlurSize(time);
  EvaluateCrop(time);
  ReadImagePlacement(input2Image, frame.input2Place, coordMan, effectHost);
  UpdateTransition(time);
  ReportPlaces();

  HvMemoryAccount account;
  const HvMemoryScope scope(&account);
  const HRESULT result = CheckPictures() ? RenderSettledFrame(time) : kOk;
  NoteBlurWithoutSize();
  frameMemory_ = {BytesOf(outputImage) + BytesOf(inputImage) + BytesOf(input2Image) + BytesOf(maskImage),
                  account.peak()};
  return result;
}

// The filter stops for want of memory at sizes that no memory serves: those that are no numbers, and negative ones.
void Blur::NoteBlurWithoutSize() {
  const bool isStopped = frame.interrupt.state.load(std::memory_order_relaxed) == HvInterruptRecord::kOutOfMemoryReason;
  if (isStopped && !RanOutOfMemory() && frame.refusal.reason == nullptr) {
    frame.refusal = {nullptr, "its blur has no size that can be rendered"};
  }
}

HRESULT Blur::RenderSettledFrame(double time) {
  const GUID format = outputImage->Format();
  if (format == MFIF_RGBA_RAW_32) return RenderPixels<R8>(time);
  if (format == MFIF_RGBA_S2_14) return RenderPixels<R16>(time);
  if (format == kFormatRgbaFloat) return RenderPixels<Rf>(time);
  return kOk;
}

}  // namespace vblur
