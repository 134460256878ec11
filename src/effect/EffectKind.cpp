// GetImageEffectInfo: the family sets the kind; the kind sets the pages and what the host must provide.
#include "effect/EffectKind.h"

#include <algorithm>
#include <array>

#include "effect/Blur.h"
#include "properties/ClassIds.h"

namespace vblur {
namespace {

struct FamilyKind {
  GUID family;
  std::int32_t kind;
};

constexpr std::array kKindOfFamily = {
    FamilyKind{families::kFilter, kKindFilter},         FamilyKind{families::kFilterSecond, kKindFilter},
    FamilyKind{families::kFilterThird, kKindFilter},    FamilyKind{families::kSource, kKindSource},
    FamilyKind{families::kGenerator, kKindGenerator},   FamilyKind{families::kPaint, kKindPaint},
    FamilyKind{families::kTransition, kKindTransition}, FamilyKind{families::kOther, kKindOther},
};

}  // namespace

HRESULT Blur::GetImageEffectInfo(tagDSImgFxInfo* info) {
  const HRESULT result = CDSImageEffect::GetImageEffectInfo(info);
  if (result < 0) return result;
  if (info->record != kDSImgFxInfoRecord) return kWrongArgument;
  const auto known = std::ranges::find(kKindOfFamily, info->family, &FamilyKind::family);
  if (known != kKindOfFamily.end()) effectKind = known->kind;
  if ((onceWord & kPagesAdded) == 0) {
    onceWord |= kPagesAdded;
    AddPages();
  }
  const bool isPaint = effectKind == kKindPaint;
  const bool isTransition = effectKind == kKindTransition;
  const bool takesMasks = !isTransition && effectKind != kKindGenerator && (effectFlags & kFlagMasks) != 0;
  const bool hasTwoClips = isTransition || (effectFlags & kFlagTwoClips) != 0;
  auto& words = info->words;
  words = {};
  words[1] = isPaint ? 96 : 0;
  words[2] = isPaint || takesMasks ? 8 : 2;
  words[3] = effectFlags & kFlagFourthWord;
  words[4] = isTransition || (effectFlags & kFlagTransition) != 0 ? 1 : 0;
  words[5] = words[7] = isPaint ? 1 : 0;
  words[9] =
      ((effectFlags & kFlagWholeFrames) != 0 || frame.fieldMode == 0 ? 10 : 2) | 256 | (hasTwoClips ? 16 : 0) | 512;
  if (hasTwoClips) imageEffectFlags |= 16;
  return result;
}

void Blur::AddPages() {
  switch (effectKind) {
    case kKindPaint:
      AddPage(classes::kFullBlurPPG);
      AddPage(classes::kHelpPPG);
      break;
    case kKindFilter:
      AddPage(classes::kFullBlurPPG);
      AddPage(classes::kFullCropPPG);
      AddPage(classes::kHelpPPG);
      break;
    case kKindTransition:
      AddPage(classes::kTransitionBlurPPG);
      AddPage(classes::kHvTransitionPPG);
      AddPage(classes::kFullCropPPG);
      AddPage(classes::kHelpPPG);
      break;
    default: break;
  }
}

}  // namespace vblur
