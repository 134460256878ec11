// Construction, cloning and identification of the effect.
#include <new>

#include "effect/Blur.h"
#include "effect/FrameFormats.h"
#include "effect/ProjectSizes.h"
#include "properties/ClassIds.h"
#include "resources/Numbers.h"

namespace vblur {
namespace {

// The host's ids of the effect's category and type.
constexpr GUID kEffectCategory = MakeGuid("{0BC5A2F0-5C49-11CF-A04A-00A02418CFB9}");
constexpr GUID kEffectType = MakeGuid("{0BC5A2F2-5C49-11CF-A04A-00A02418CFB9}");

constexpr std::int32_t kEffectFlags = kFlagFourthWord | kFlagWholeFrames | kFlagMasks | kFlagUnread | kFlagChannelMasks;

}  // namespace

void Blur::SetConstants() {
  frame.fieldMode = kHalfHeightFields;
  frame.cropMode = kCropBoxAndEdges;
  effectFlags = kEffectFlags;
  transitionMixesInputs = 1;
}

Blur::Blur() {
  name = {};
  effectKind = 0;
  SetConstants();
  if (CDSPlugInEffect::Init() >= 0) Blur::SetDefaults();
  // So that overlay controls have a picture before the first render.
  const ProjectUserSize user = ReadUserSize(effectHost);
  for (PlaceRecord* place : {&frame.outputPlace, &frame.inputPlace, &frame.input2Place}) {
    *place = {};
    place->sizeX = static_cast<float>(UserToWorldRatio(effectHost) * user.x);
    place->sizeY = static_cast<float>(user.y);
  }
}

Blur::Blur(const Blur& source)
    : HvDsEffect(source),
      CDSImageMIEffect(source),
      IVBlurFacts(),
      ProcessSettings(),
      masks_(source.masks_),
      cloneSource(const_cast<Blur*>(&source)) {
  CopyAnimation(source);
  SetConstants();
  CopyParameters(source);
}

Blur::~Blur() {
  ReleaseOverlay();
  CDSPlugInEffect::Term();
}

HRESULT Blur::QueryInterface(const GUID& iid, void** result) {
  if (iid != kBlurObject && iid != kDsEffectObject) return CDSImageMIEffect::QueryInterface(iid, result);
  if (result == nullptr) return kNullPointer;
  AddRef();
  if (iid == kDsEffectObject) {
    *result = static_cast<HvDsEffect*>(this);
  } else {
    *result = this;
  }
  return kOk;
}

void HvDsEffect::ReleaseObject() {
  dynamic_cast<CDSBasePropertyContainer&>(*this).Release();
}

void* Blur::FindInterface(const GUID& iid) {
  if (iid == IVBlurFacts::kIid) return static_cast<IVBlurFacts*>(this);
  if (iid == IVBlurProcess::kIid) return static_cast<IVBlurProcess*>(this);
  return CDSImageMIEffect::FindInterface(iid);
}

HRESULT Blur::LoadText(std::int32_t id, char16_t* buffer, std::int32_t capacity) const {
  if (buffer == nullptr) return kNullPointer;
  return LoadStringW(module, id, buffer, capacity) > 0 ? kOk : kFailed;
}

HRESULT Blur::GetName(char16_t* buffer, std::int32_t capacity) {
  if (const HRESULT result = LoadText(resources::strings::kName, buffer, capacity); result != kOk) return result;
  return LoadText(resources::strings::kName, name.data(), static_cast<std::int32_t>(name.size()));
}

HRESULT Blur::GetDescription(char16_t* buffer, std::int32_t capacity) {
  return LoadText(resources::strings::kDescription, buffer, capacity);
}

HRESULT Blur::GetPicture(HBITMAP* picture) {
  if (picture == nullptr) return kNullPointer;
  *picture = LoadBitmapW(module, resources::bitmaps::kEffect);
  return *picture == nullptr ? kFailed : kOk;
}

HRESULT Blur::GetClassID(GUID* clsid) {
  if (clsid == nullptr) return kNullPointer;
  *clsid = classes::kBlur;
  return kOk;
}

HRESULT Blur::Init() {
  const HRESULT result = CDSImageMIEffect::Init();
  return result < 0 ? result : SetDefaults();
}

HRESULT Blur::GetInfo(tagDSFxInfo* info) {
  if (const HRESULT result = CDSImageEffect::GetInfo(info); result < 0) return result;
  if (info->record != kDSFxInfoRecord) return kWrongArgument;
  info->category = kEffectCategory;
  info->type = kEffectType;
  info->effect = classes::kBlur;
  info->reserved1 = 0;
  info->reserved2 = 0;
  return kOk;
}

HRESULT Blur::IsFormatSupported(const GUID& format) {
  return FormatOfColours(format) != nullptr ? kOk : kFalse;
}

HRESULT Blur::GetInputOverscan(double time, double* left, double* right, double* bottom, double* top) {
  if (left == nullptr || right == nullptr || bottom == nullptr || top == nullptr) return kNullPointer;
  const BlurSize size = GetBlurSize(time);
  *left = *right = static_cast<double>(size.x);
  *bottom = *top = static_cast<double>(size.y);
  return kOk;
}

HRESULT Blur::Verify() {
  if (const HRESULT result = CDSImageEffect::Verify(); result < 0) return result;
  if (const HRESULT result = VerifyEffect(); result < 0) return result;
  if (outputImage == nullptr) return kNullPointer;
  if (NeedsInput() && inputImage == nullptr) return kNullPointer;
  if (effectKind == kKindTransition && input2Image == nullptr) return kNullPointer;
  if (effectKind == kKindPaint && maskImage == nullptr) return kNullPointer;
  return kOk;
}

HRESULT Blur::Clone(const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = nullptr;
  Blur* clone = nullptr;
  try {
    clone = new Blur(*this);
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  }
  const HRESULT answer = clone->QueryInterface(iid, result);
  clone->Release();
  return answer;
}

}  // namespace vblur
