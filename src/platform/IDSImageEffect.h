// The effect as the host sees it: pictures, a region and a time go in, a rendered frame comes out. Its
// properties are reached through IDSProperties of the same object.
//
// Every call belongs to one thread at a time; a frame that is to render beside another renders on a
// clone. For a frame a host calls Verify, IsFormatSupported, PrepareData, Setup, BeginFrame, RenderFrame,
// EndFrame and Cleanup, in this order.
#pragma once

#include "Com.h"
#include "DSFxInfo.h"
#include "IDSCoordMan.h"
#include "IDSEffectHost.h"
#include "IDSExecuteContext.h"
#include "IDSImage.h"

namespace vblur {

// A transform of a plane in space, by rows.
using DSTransfo4 = std::array<double, 16>;

class IDSImageEffect : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A814}");

  // What the effect is: kWrongArgument unless the record says that it is a tagDSFxInfo.
  virtual HRESULT GetInfo(tagDSFxInfo* info) = 0;
  // What the effect wants when used under the family in the record; it takes on that use.
  virtual HRESULT GetImageEffectInfo(tagDSImgFxInfo* info) = 0;
  // 0 for a picture format that the effect renders, 1 for any other.
  virtual HRESULT IsFormatSupported(const GUID& format) = 0;
  // Puts every property to its default, without a curve.
  virtual HRESULT SetDefaults() = 0;
  // How much of the source the frame at a time needs beyond the output, in pixels of the pictures.
  virtual HRESULT GetInputOverscan(double time, double* left, double* right, double* bottom, double* top) = 0;
  // kNullPointer while a picture is missing that the use of the effect needs.
  virtual HRESULT Verify() = 0;
  // Renders one frame into the output. An interrupted render returns 0 too: ask the execute context.
  virtual HRESULT RenderFrame(double time) = 0;
  // An effect of its own with all that this one holds. It reports where pictures lie to this one, which
  // must outlive it.
  virtual HRESULT Clone(const GUID& iid, void** result) = 0;

  // What the host sets for the next frame, in the order in which hosts call it.
  // In frames per unit of time.
  virtual HRESULT SetSampleRate(double rate) = 0;
  virtual HRESULT Setup() = 0;
  virtual HRESULT Cleanup() = 0;
  // The pixels that the first input has: kNullPointer without one.
  virtual HRESULT GetInputBbox(double time, DSPixelBox* box) = 0;
  // How far the frame at a time goes beyond the output, in pixels.
  virtual HRESULT GetOutputOverscan(double time, double* left, double* right, double* bottom, double* top) = 0;
  // Images, contexts and hosts are borrowed: they must outlive the render call, or be replaced by null
  // before they go.
  virtual HRESULT SetInput(IDSImage* image) = 0;
  virtual HRESULT SetOutput(IDSImage* image) = 0;
  // One bit for each channel, from red up.
  virtual HRESULT SetChannelMask(std::uint32_t mask) = 0;
  // A one-component image and where it lies relative to the first input, in pixels.
  virtual HRESULT SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) = 0;
  // The region to render, in pixels of the output before its origin is added; row 0 at the bottom.
  virtual HRESULT SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) = 0;
  virtual HRESULT SetQuality(std::int32_t quality) = 0;
  virtual HRESULT SetInput2(IDSImage* image) = 0;
  // Where the second input lies relative to the first, in pixels.
  virtual HRESULT SetInput2Offset(std::int32_t x, std::int32_t y) = 0;
  // A clone for the frame at a time.
  virtual HRESULT CloneAtTime(double time, const GUID& iid, void** result) = 0;
  virtual HRESULT SetDirection(std::int32_t direction) = 0;
  // Of the pen that paints the effect, from 0 to 1.
  virtual HRESULT SetPressure(double pressure) = 0;
  // The picture as it was before anything was painted on it.
  virtual HRESULT SetOriginalImage(IDSImage* image) = 0;
  virtual HRESULT SetTransfo4(const DSTransfo4& transform) = 0;
  virtual HRESULT SetProcessingMode(std::int32_t mode) = 0;
  virtual HRESULT GetProcessingMode(std::int32_t* mode) = 0;
  virtual HRESULT SetExecuteContext(IDSExecuteContext* context) = 0;
  virtual HRESULT SetEffectHost(IDSEffectHost* host) = 0;
  virtual HRESULT SetCoordMan(IDSCoordMan* coordMan) = 0;
  virtual HRESULT GetCoordMan(IDSCoordMan** coordMan) = 0;
  virtual HRESULT BeginFrameRange(double first, double last) = 0;
  virtual HRESULT EndFrameRange() = 0;
  virtual HRESULT BeginFrame(double time) = 0;
  virtual HRESULT EndFrame() = 0;

  virtual HRESULT ClearROI() = 0;
  // 1 the first field, 2 the second field, anything else a whole frame.
  virtual HRESULT SetField(std::int32_t field) = 0;
  // The length of the effect, in the unit of time.
  virtual HRESULT SetDuration(double duration) = 0;
  // The container's, called first in a render; a render ends with a result that is not 0.
  virtual HRESULT PrepareData() = 0;

 protected:
  ~IDSImageEffect() = default;
};

}  // namespace vblur
