// The circle of the blur: its radius is the property `Blur`, its aspect follows `Aspect`.
#pragma once

#include "overlay/HvTCircle.h"
#include "overlay/HvTDsObject.h"
#include "platform/IDSProperties.h"

namespace vblur {

// From `Aspect` as a fraction of -1 to 1 to the circle's: 1 for a true circle, infinite or 0 at the ends.
float AspectToDraw(double aspect);

class HvTDsCircle : public HvTDsObject, public HvTCircle {
 public:
  HvTDsCircle();
  ~HvTDsCircle() override;

  void BindProperties(const GUID& radius, const GUID& aspect);

  std::int32_t OnPropertyChange(const GUID& property, const DSVariant* value) override;
  void OnTime(double time) override;
  // The radius; the aspect is never written.
  void Commit() override;
  void Refresh() override { OnTime(kNow); }

 private:
  void TakeRadius(double value) { SetRadius(static_cast<float>(value)); }
  void TakeAspect(double percent) { SetAspect(AspectToDraw(percent / 100.0)); }

  GUID radiusProperty_ = GUID_NO_PROPERTY;
  GUID aspectProperty_ = GUID_NO_PROPERTY;
};

}  // namespace vblur
