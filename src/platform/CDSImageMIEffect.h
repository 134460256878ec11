// The host's base classes of image effects: they keep what the host has set, and the effect derives from
// them and renders. The host's SDK library implements them.
#pragma once

#include "platform/CDSPlugInEffect.h"
#include "platform/IDSImageEffect.h"

namespace vblur {

class CDSImageEffect : public CDSPlugInEffect, public IDSImageEffect {
 public:
  // The properties that every image effect has.
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
  HRESULT SetDefaults() override;
  HRESULT GetInputOverscan(double time, double* left, double* right, double* bottom, double* top) override;
  HRESULT Verify() override;
  HRESULT RenderFrame(double time) override;
  HRESULT Clone(const GUID& iid, void** result) override;

  HRESULT Setup() override;
  HRESULT Cleanup() override;
  HRESULT SetInput(IDSImage* image) override;
  HRESULT SetOutput(IDSImage* image) override;
  HRESULT SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) override;
  HRESULT SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) override;
  HRESULT ClearROI() override;
  HRESULT SetInput2(IDSImage* image) override;
  HRESULT SetField(std::int32_t field) override;
  HRESULT SetDuration(double newDuration) override;
  HRESULT SetExecuteContext(IDSExecuteContext* context) override;
  HRESULT SetEffectHost(IDSEffectHost* host) override;
  HRESULT SetCoordMan(IDSCoordMan* newCoordMan) override;
  HRESULT GetCoordMan(IDSCoordMan** result) override;
  HRESULT BeginFrameRange(double first, double last) override;
  HRESULT EndFrameRange() override;
  HRESULT BeginFrame(double time) override;
  HRESULT EndFrame() override;
  HRESULT PrepareData() override;

 protected:
  CDSImageEffect() = default;
  CDSImageEffect(const CDSImageEffect&) = default;

  void* FindInterface(const GUID& iid) override;
  // A content property of the project: of the host that the effect was given, else of the one that is open.
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
  // What the host is to know of the effect's use; bit 16 with a second input that is a clip of its own.
  std::int32_t imageEffectFlags = 0;
};

// An image effect with several inputs.
class CDSImageMIEffect : public CDSImageEffect {};

}  // namespace vblur
