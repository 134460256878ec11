#include "platform/CDSImageMIEffect.h"

namespace vblur {

void CDSImageMIEffect::SetOutput(IDSImage* image) {
  outputImage = image;
}

void CDSImageMIEffect::SetInput(IDSImage* image) {
  inputImage = image;
}

void CDSImageMIEffect::SetInput2(IDSImage* image) {
  input2Image = image;
}

void CDSImageMIEffect::SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) {
  maskImage = image;
  maskOffsetX = offsetX;
  maskOffsetY = offsetY;
}

void CDSImageMIEffect::SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
  roiSet = 1;
  roiX = x;
  roiY = y;
  roiWidth = width;
  roiHeight = height;
}

void CDSImageMIEffect::ClearROI() {
  roiSet = 0;
}

void CDSImageMIEffect::SetField(std::int32_t field) {
  hostField = field;
}

void CDSImageMIEffect::SetDuration(double newDuration) {
  duration = newDuration;
}

void CDSImageMIEffect::SetCoordMan(IDSCoordMan* newCoordMan) {
  coordMan = newCoordMan;
}

void CDSImageMIEffect::SetExecuteContext(IDSExecuteContext* context) {
  executeContext = context;
}

void CDSImageMIEffect::SetEffectHost(IDSEffectHost* host) {
  effectHost = host;
}

HRESULT CDSImageMIEffect::PrepareData() {
  return kOk;
}

double CDSImageMIEffect::GetValueDirect(const GUID& property, double plainValue, double time) const {
  double value = plainValue;
  if (effectHost != nullptr && effectHost->AnimatedValue(property, time, value)) return value;
  return plainValue;
}

HRESULT CDSImageMIEffect::DSContentGetProperty(const char* key, double& value) const {
  return effectHost == nullptr ? kFailed : effectHost->ContentProperty(key, value);
}

}  // namespace vblur
