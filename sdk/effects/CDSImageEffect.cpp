#include "platform/CDSImageEffect.h"

namespace vblur {

const CDSPropertiesMap CDSImageEffect::m_PropertiesMap{};

void* CDSImageEffect::FindInterface(const GUID& iid) {
  if (iid == IDSImageEffect::kIid) return static_cast<IDSImageEffect*>(this);
  if (iid == IDSHWEffects::kIid) return static_cast<IDSHWEffects*>(this);
  if (iid == IDSChildPropertyOwner::kIid) return static_cast<IDSChildPropertyOwner*>(this);
  return CDSPlugInEffect::FindInterface(iid);
}

HRESULT CDSImageEffect::GetStaticPropertyCount(std::int32_t* count) {
  if (count == nullptr) return kNullPointer;
  *count = static_cast<std::int32_t>(m_PropertiesMap.entries.size());
  return kOk;
}

HRESULT CDSImageEffect::GetStaticPropertiesMap(const CDSPropertiesMap** map) {
  if (map == nullptr) return kNullPointer;
  *map = &m_PropertiesMap;
  return kOk;
}

HRESULT CDSImageEffect::GetClassID(GUID* clsid) {
  return clsid == nullptr ? kNullPointer : kFailed;
}

HRESULT CDSImageEffect::GetInfo(tagDSFxInfo* info) {
  return info == nullptr ? kNullPointer : kOk;
}

HRESULT CDSImageEffect::GetImageEffectInfo(tagDSImgFxInfo* info) {
  return info == nullptr ? kNullPointer : kOk;
}

HRESULT CDSImageEffect::IsFormatSupported(const GUID&) {
  return kFalse;
}

HRESULT CDSImageEffect::SetDefaults() {
  RemoveAnimation();
  return kOk;
}

HRESULT CDSImageEffect::GetInputOverscan(double, double* left, double* right, double* bottom, double* top) {
  if (left == nullptr || right == nullptr || bottom == nullptr || top == nullptr) return kNullPointer;
  *left = *right = *bottom = *top = 0.0;
  return kOk;
}

HRESULT CDSImageEffect::Verify() {
  return kOk;
}

HRESULT CDSImageEffect::RenderFrame(double) {
  return kOk;
}

HRESULT CDSImageEffect::Clone(const GUID&, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = nullptr;
  return kFailed;
}

HRESULT CDSImageEffect::SetSampleRate(double rate) {
  sampleRate = rate;
  return kOk;
}

HRESULT CDSImageEffect::Setup() {
  return kOk;
}

HRESULT CDSImageEffect::Cleanup() {
  return kOk;
}

HRESULT CDSImageEffect::GetInputBbox(double, DSPixelBox* box) {
  if (box == nullptr || inputImage == nullptr) return kNullPointer;
  box->origin = coordMan == nullptr ? DSPixelPair{} : coordMan->PixelOrigin(*inputImage);
  box->size = inputImage->Size();
  return kOk;
}

HRESULT CDSImageEffect::GetOutputOverscan(double time, double* left, double* right, double* bottom, double* top) {
  return CDSImageEffect::GetInputOverscan(time, left, right, bottom, top);
}

HRESULT CDSImageEffect::SetInput(IDSImage* image) {
  inputImage = image;
  return kOk;
}

HRESULT CDSImageEffect::SetOutput(IDSImage* image) {
  outputImage = image;
  return kOk;
}

HRESULT CDSImageEffect::SetChannelMask(std::uint32_t mask) {
  channelMask = mask;
  return kOk;
}

HRESULT CDSImageEffect::SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) {
  maskImage = image;
  maskOffsetX = offsetX;
  maskOffsetY = offsetY;
  return kOk;
}

HRESULT CDSImageEffect::SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
  roiSet = 1;
  roiX = x;
  roiY = y;
  roiWidth = width;
  roiHeight = height;
  return kOk;
}

HRESULT CDSImageEffect::SetQuality(std::int32_t newQuality) {
  quality = newQuality;
  return kOk;
}

HRESULT CDSImageEffect::SetInput2(IDSImage* image) {
  input2Image = image;
  return kOk;
}

HRESULT CDSImageEffect::SetInput2Offset(std::int32_t x, std::int32_t y) {
  input2OffsetX = x;
  input2OffsetY = y;
  return kOk;
}

HRESULT CDSImageEffect::CloneAtTime(double, const GUID& iid, void** result) {
  return Clone(iid, result);
}

HRESULT CDSImageEffect::SetDirection(std::int32_t newDirection) {
  direction = newDirection;
  return kOk;
}

HRESULT CDSImageEffect::SetPressure(double newPressure) {
  pressure = newPressure;
  return kOk;
}

HRESULT CDSImageEffect::SetOriginalImage(IDSImage* image) {
  originalImage = image;
  return kOk;
}

HRESULT CDSImageEffect::SetTransfo4(const DSTransfo4& transform) {
  transfo4 = transform;
  return kOk;
}

HRESULT CDSImageEffect::SetProcessingMode(std::int32_t mode) {
  processingMode = mode;
  return kOk;
}

HRESULT CDSImageEffect::GetProcessingMode(std::int32_t* mode) {
  if (mode == nullptr) return kNullPointer;
  *mode = processingMode;
  return kOk;
}

HRESULT CDSImageEffect::SetExecuteContext(IDSExecuteContext* context) {
  executeContext = context;
  return kOk;
}

HRESULT CDSImageEffect::SetEffectHost(IDSEffectHost* host) {
  effectHost = host;
  return kOk;
}

HRESULT CDSImageEffect::SetCoordMan(IDSCoordMan* newCoordMan) {
  coordMan = newCoordMan;
  return kOk;
}

HRESULT CDSImageEffect::GetCoordMan(IDSCoordMan** result) {
  if (result == nullptr) return kNullPointer;
  *result = coordMan;
  return kOk;
}

HRESULT CDSImageEffect::BeginFrameRange(double, double) {
  return kOk;
}

HRESULT CDSImageEffect::EndFrameRange() {
  return kOk;
}

HRESULT CDSImageEffect::BeginFrame(double) {
  return kOk;
}

HRESULT CDSImageEffect::EndFrame() {
  return kOk;
}

HRESULT CDSImageEffect::ClearROI() {
  roiSet = 0;
  return kOk;
}

HRESULT CDSImageEffect::SetField(std::int32_t field) {
  hostField = field;
  return kOk;
}

HRESULT CDSImageEffect::SetDuration(double newDuration) {
  duration = newDuration;
  return kOk;
}

HRESULT CDSImageEffect::PrepareData() {
  return kOk;
}

}  // namespace vblur
