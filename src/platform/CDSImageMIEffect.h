// The host's base class of an image effect with several inputs. It keeps what the host has set; the
// effect derives from it and renders. Only its declaration belongs to the effect's side of the seam:
// the host implements it.
#pragma once

#include "platform/IDSImageEffect.h"

namespace vblur {

class CDSImageMIEffect : public IDSImageEffect {
 public:
  void SetOutput(IDSImage* image) override;
  void SetInput(IDSImage* image) override;
  void SetInput2(IDSImage* image) override;
  void SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) override;
  void SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) override;
  void ClearROI() override;
  void SetField(std::int32_t field) override;
  void SetDuration(double newDuration) override;
  void SetCoordMan(IDSCoordMan* newCoordMan) override;
  void SetExecuteContext(IDSExecuteContext* context) override;
  void SetEffectHost(IDSEffectHost* host) override;

 protected:
  // Called first in every render; a non-zero result ends the render with that result.
  virtual HRESULT PrepareData();
  // The value of a property at a time, or the plain value when the property is not animated.
  double GetValueDirect(const GUID& property, double plainValue, double time) const;
  // A content property of the project; a failure when there is no host to ask.
  HRESULT DSContentGetProperty(const char* key, double& value) const;

  IDSImage* outputImage = nullptr;
  IDSImage* inputImage = nullptr;
  IDSImage* input2Image = nullptr;
  IDSImage* maskImage = nullptr;
  std::int32_t maskOffsetX = 0;
  std::int32_t maskOffsetY = 0;
  IDSCoordMan* coordMan = nullptr;
  IDSExecuteContext* executeContext = nullptr;
  IDSEffectHost* effectHost = nullptr;
  std::int32_t roiSet = 0;
  std::int32_t roiX = 0;
  std::int32_t roiY = 0;
  std::int32_t roiWidth = 0;
  std::int32_t roiHeight = 0;
  std::int32_t hostField = 0;
  double duration = 0.0;
};

}  // namespace vblur
