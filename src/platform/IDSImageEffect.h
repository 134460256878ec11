// The effect as its host sees it: pictures, a region and a time in, a rendered frame out. The same object has its
// properties as IDSProperties.
//
// One thread at a time calls an effect; frames that render side by side use clones. The calls of a frame, in order:
// Verify, IsFormatSupported, PrepareData, Setup, BeginFrame, RenderFrame, EndFrame, Cleanup.
//
// The effect stores sample rate, channel mask, quality, the second input's offset, direction, pressure, original image,
// transform and processing mode, and uses none of them.
#pragma once

#include "Com.h"
#include "DSFxInfo.h"
#include "IDSCoordMan.h"
#include "IDSEffectHost.h"
#include "IDSExecuteContext.h"
#include "IDSImage.h"

namespace vblur {

// A 4 x 4 matrix by rows.
using DSTransfo4 = std::array<double, 16>;

class IDSImageEffect : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A814}");

  // Identification. kWrongArgument unless the record is kDSFxInfoRecord.
  virtual HRESULT GetInfo(tagDSFxInfo* info) = 0;
  // Sets the kind from the record's family, and fills in what the kind needs.
  virtual HRESULT GetImageEffectInfo(tagDSImgFxInfo* info) = 0;
  // 0 for a format that the effect renders, 1 for any other.
  virtual HRESULT IsFormatSupported(const GUID& format) = 0;
  // Resets every property to its default and removes curves.
  virtual HRESULT SetDefaults() = 0;
  // How far the frame at a time reads beyond the output, in pixels.
  virtual HRESULT GetInputOverscan(double time, double* left, double* right, double* bottom, double* top) = 0;
  // kNullPointer while a required picture is missing.
  virtual HRESULT Verify() = 0;
  // Renders a frame into the output. kNullPointer without an output, else the result of its IsUsable. Also 0 when
  // interrupted (ask the execute context), and for an output of another format, which is not written.
  virtual HRESULT RenderFrame(double time) = 0;
  // An independent copy. It reports the places of its pictures to this effect, which must outlive it.
  virtual HRESULT Clone(const GUID& iid, void** result) = 0;

  // In frames per unit of time.
  virtual HRESULT SetSampleRate(double rate) = 0;
  virtual HRESULT Setup() = 0;
  virtual HRESULT Cleanup() = 0;
  // The first input's pixels; kNullPointer without one.
  virtual HRESULT GetInputBbox(double time, DSPixelBox* box) = 0;
  // How far the frame at a time extends beyond the output, in pixels.
  virtual HRESULT GetOutputOverscan(double time, double* left, double* right, double* bottom, double* top) = 0;
  // Images, contexts and hosts are borrowed: keep them alive through a render, or replace them by null.
  virtual HRESULT SetInput(IDSImage* image) = 0;
  virtual HRESULT SetOutput(IDSImage* image) = 0;
  // One bit for each channel, from red up.
  virtual HRESULT SetChannelMask(std::uint32_t mask) = 0;
  // A one-component image and its offset from the first input, in pixels.
  virtual HRESULT SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) = 0;
  // The region to render in the output's pixels, before its origin is added; row 0 at the bottom.
  virtual HRESULT SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) = 0;
  virtual HRESULT SetQuality(std::int32_t quality) = 0;
  virtual HRESULT SetInput2(IDSImage* image) = 0;
  // The second input's offset from the first, in pixels.
  virtual HRESULT SetInput2Offset(std::int32_t x, std::int32_t y) = 0;
  // A clone for the frame at a time.
  virtual HRESULT CloneAtTime(double time, const GUID& iid, void** result) = 0;
  virtual HRESULT SetDirection(std::int32_t direction) = 0;
  // Pen pressure from 0 to 1, for paint effects.
  virtual HRESULT SetPressure(double pressure) = 0;
  // The picture before painting.
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
  // The length of the effect, in units of time.
  virtual HRESULT SetDuration(double duration) = 0;
  // Called first in a render, which ends with any result other than 0.
  virtual HRESULT PrepareData() = 0;

 protected:
  ~IDSImageEffect() = default;
};

}  // namespace vblur
