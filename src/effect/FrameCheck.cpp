// Whether the pictures of a frame can be rendered.
#include <array>
#include <cstdint>

#include "effect/Blur.h"
#include "effect/FrameFormats.h"

namespace vblur {
namespace {

// A picture of the frame and what is expected of it.
struct FramePicture {
  const IDSImage* image = nullptr;
  const char* name = nullptr;
  bool isNeeded = false;
  GUID format;
  // Its lower left corner; a mask's is a sum.
  std::int64_t x = 0;
  std::int64_t y = 0;
};

bool IsKnown(const GUID& format) {
  return PixelBytesOf(format) > 0;
}

bool CanBeCounted(std::int64_t corner, std::int64_t side) {
  return side <= FrameLimits::kLongestSide && corner >= -FrameLimits::kFarthestPixel &&
         corner + side <= FrameLimits::kFarthestPixel;
}

// Whether each row of a picture has memory of its own and begins with a whole component.
bool HasRows(const IDSImage& image, std::int32_t width) {
  const std::int64_t step = image.RowStep();
  const std::int64_t row = std::int64_t{width} * PixelBytesOf(image.Format());
  if (step == 0 || row <= 0) return true;
  return step % ComponentBytesOf(image.Format()) == 0 && (step >= row || step <= -row);
}

// Why nothing can be rendered with a picture, needed or not: its memory would be read as that of another format, or its
// positions would wrap. Null: it can.
const char* ObstacleOf(const FramePicture& picture) {
  if (picture.image == nullptr || picture.image->IsUsable() != kOk) return nullptr;
  const GUID format = picture.image->Format();
  if (IsKnown(format) && format != picture.format) return "has another format than the output";
  const DSPixelPair size = picture.image->Size();
  if (!CanBeCounted(picture.x, size.x) || !CanBeCounted(picture.y, size.y)) return "lies beyond the pixels that count";
  return HasRows(*picture.image, size.x) ? nullptr : "has rows that overlap or divide a component";
}

// Why a picture shows nothing. Null: it does.
const char* FlawOf(const FramePicture& picture) {
  if (picture.image == nullptr) return "is missing";
  if (picture.image->IsUsable() != kOk) return "cannot be used";
  const DSPixelPair size = picture.image->Size();
  if (size.x < 1 || size.y < 1) return "has no pixels";
  if (picture.image->FirstPixel() == nullptr) return "has no memory";
  return IsKnown(picture.image->Format()) ? nullptr : "has an unknown format";
}

}  // namespace

bool Blur::CheckPictures() {
  const GUID format = outputImage->Format();
  const FrameFormat* const known = FormatOfColours(format);
  frame.refusal = {};
  if (known == nullptr) {
    frame.refusal = {"output", "has an unknown format"};
    return false;
  }
  const PlaceRecord& output = frame.outputPlace;
  const PlaceRecord& input = frame.inputPlace;
  const PlaceRecord& input2 = frame.input2Place;
  const std::array pictures = {
      FramePicture{outputImage, "output", true, format, output.originX, output.originY},
      FramePicture{inputImage, "input", NeedsInput() || inputImage != nullptr, format, input.originX, input.originY},
      FramePicture{input2Image, "second input", effectKind == kKindTransition, format, input2.originX, input2.originY},
      FramePicture{maskImage, "mask", effectKind == kKindPaint, known->mask, std::int64_t{maskOffsetX} + input.originX,
                   std::int64_t{maskOffsetY} + input.originY},
  };
  for (const FramePicture& picture : pictures) {
    if (const char* const obstacle = ObstacleOf(picture)) {
      frame.refusal = {picture.name, obstacle};
      return false;
    }
  }
  for (const FramePicture& picture : pictures) {
    const char* const flaw = picture.isNeeded ? FlawOf(picture) : nullptr;
    if (flaw != nullptr && frame.refusal.reason == nullptr) frame.refusal = {picture.name, flaw};
  }
  return true;
}

}  // namespace vblur
