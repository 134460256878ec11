// The host's base class of image effects: it stores what the host sets, for the derived class to render with.
// Implemented by sdk/effects.
#pragma once

#include "CDSPlugInEffect.h"
#include "IDSEffectRoles.h"
#include "IDSImageEffect.h"

namespace vblur {

class CDSImageEffect : public CDSPlugInEffect,
                       public IDSImageEffect,
                       public IDSHWEffects,
                       public IDSChildPropertyOwner {
 public:
  // The properties of every image effect.
  static const CDSPropertiesMap m_PropertiesMap;

  HRESULT QueryInterface(const GUID& iid, void** result) override {
    return CDSBasePropertyContainer::QueryInterface(iid, result);
  }
  std::uint32_t AddRef() override { return CDSBasePropertyContainer::AddRef(); }
  std::uint32_t Release() override { return CDSBasePropertyContainer::Release(); }

  HRESULT GetStaticPropertyCount(std::int32_t* count) override;
  HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) override;
  HRESULT GetClassID(GUID* clsid) override;

  HRESULT GetInfo(tagDSFxInfo* info) override;
  HRESULT GetImageEffectInfo(tagDSImgFxInfo* info) override;
  HRESULT IsFormatSupported(const GUID& format) override;
  // Removes curves without a notice: a class of effects with properties resets them, and notifies of all at once.
  HRESULT SetDefaults() override;
  HRESULT GetInputOverscan(double time, double* left, double* right, double* bottom, double* top) override;
  HRESULT Verify() override;
  HRESULT RenderFrame(double time) override;
  HRESULT Clone(const GUID& iid, void** result) override;

  HRESULT SetSampleRate(double rate) override;
  HRESULT Setup() override;
  HRESULT Cleanup() override;
  HRESULT GetInputBbox(double time, DSPixelBox* box) override;
  HRESULT GetOutputOverscan(double time, double* left, double* right, double* bottom, double* top) override;
  HRESULT SetInput(IDSImage* image) override;
  HRESULT SetOutput(IDSImage* image) override;
  HRESULT SetChannelMask(std::uint32_t mask) override;
  HRESULT SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) override;
  HRESULT SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) override;
  HRESULT SetQuality(std::int32_t newQuality) override;
  HRESULT SetInput2(IDSImage* image) override;
  HRESULT SetInput2Offset(std::int32_t x, std::int32_t y) override;
  HRESULT CloneAtTime(double time, const GUID& iid, void** result) override;
  HRESULT SetDirection(std::int32_t newDirection) override;
  HRESULT SetPressure(double newPressure) override;
  HRESULT SetOriginalImage(IDSImage* image) override;
  HRESULT SetTransfo4(const DSTransfo4& transform) override;
  HRESULT SetProcessingMode(std::int32_t mode) override;
  HRESULT GetProcessingMode(std::int32_t* mode) override;
  HRESULT SetExecuteContext(IDSExecuteContext* context) override;
  HRESULT SetEffectHost(IDSEffectHost* host) override;
  HRESULT SetCoordMan(IDSCoordMan* newCoordMan) override;
  HRESULT GetCoordMan(IDSCoordMan** result) override;
  HRESULT BeginFrameRange(double first, double last) override;
  HRESULT EndFrameRange() override;
  HRESULT BeginFrame(double time) override;
  HRESULT EndFrame() override;
  HRESULT ClearROI() override;
  HRESULT SetField(std::int32_t field) override;
  HRESULT SetDuration(double newDuration) override;
  HRESULT PrepareData() override;

 protected:
  CDSImageEffect() = default;
  CDSImageEffect(const CDSImageEffect&) = default;

  void* FindInterface(const GUID& iid) override;

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
  double sampleRate = 0.0;
  std::uint32_t channelMask = 0xF;
  std::int32_t quality = 0;
  std::int32_t input2OffsetX = 0;
  std::int32_t input2OffsetY = 0;
  std::int32_t direction = 0;
  double pressure = 1.0;
  IDSImage* originalImage = nullptr;
  DSTransfo4 transfo4{1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};
  std::int32_t processingMode = 0;
  // For the host; bit 16: the second input is a second clip.
  std::int32_t imageEffectFlags = 0;
};

}  // namespace vblur
