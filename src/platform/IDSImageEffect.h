// The effect as the host sees it: pictures, a region, property values and a time go in, a rendered
// frame comes out. Every call belongs to one thread at a time; a frame that is to render beside
// another needs an effect of its own.
#pragma once

#include "platform/IDSCoordMan.h"
#include "platform/IDSEffectHost.h"
#include "platform/IDSExecuteContext.h"
#include "platform/IDSImage.h"

namespace vblur {

class IDSImageEffect {
 public:
  virtual ~IDSImageEffect() = default;

  // Images, contexts and hosts are borrowed: they must outlive the render call, or be replaced by
  // null before they go.
  virtual void SetOutput(IDSImage* image) = 0;
  virtual void SetInput(IDSImage* image) = 0;
  virtual void SetInput2(IDSImage* image) = 0;
  // A one-component image and where it lies relative to the first input, in pixels.
  virtual void SetPixelMask(IDSImage* image, std::int32_t offsetX, std::int32_t offsetY) = 0;
  // The region to render, in pixels of the output before its origin is added; row 0 at the bottom.
  virtual void SetROI(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) = 0;
  virtual void ClearROI() = 0;
  // 1 the first field, 2 the second field, anything else a whole frame.
  virtual void SetField(std::int32_t field) = 0;
  // The length of the effect, in the unit of time.
  virtual void SetDuration(double duration) = 0;
  virtual void SetCoordMan(IDSCoordMan* coordMan) = 0;
  virtual void SetExecuteContext(IDSExecuteContext* context) = 0;
  virtual void SetEffectHost(IDSEffectHost* host) = 0;
  // What the effect is used as: 1 a filter, 3 a generator, 4 painted through a mask, 5 a transition.
  virtual void SetEffectKind(std::int32_t kind) = 0;

  // The plain value of a property; a value of a list or on-or-off property is truncated to an
  // integer. kWrongArgument for a GUID that the effect does not have.
  virtual HRESULT PutProperty(const GUID& property, double value) = 0;
  virtual HRESULT GetProperty(const GUID& property, double& value) const = 0;

  // 0 for a picture format that the effect renders, 1 for any other.
  virtual HRESULT IsFormatSupported(const GUID& format) const = 0;
  // Renders one frame into the output. An interrupted render returns 0 too: ask the execute context.
  virtual HRESULT RenderFrame(double time) = 0;
};

}  // namespace vblur
