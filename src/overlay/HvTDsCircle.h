// The effect's circle: the radius is bound to `Blur`, the aspect follows `Aspect`.
#pragma once

#include "overlay/HvTCircle.h"
#include "overlay/HvTDsObject.h"
#include "platform/IDSProperties.h"

namespace vblur {

// Converts `Aspect` as a fraction, -1 to 1, to the aspect of HvTCircle: 0 at -1, 1 at 0, infinity at 1.
float AspectToDraw(double aspect);

class HvTDsCircle : public HvTDsObject, public HvTCircle {
 public:
  HvTDsCircle();
  ~HvTDsCircle() override;

  void BindProperties(const GUID& radius, const GUID& aspect);

  std::int32_t OnPropertyChange(const GUID& property, const DSVariant* value) override;
  void OnTime(double time) override;
  // Writes the radius; never the aspect.
  void Commit() override;
  void Refresh() override { OnTime(kNow); }

 private:
  void TakeRadius(double value) { SetRadius(static_cast<float>(value)); }
  void TakeAspect(double percent) { SetAspect(AspectToDraw(percent / 100.0)); }

  GUID radiusProperty_ = GUID_NO_PROPERTY;
  GUID aspectProperty_ = GUID_NO_PROPERTY;
};

}  // namespace vblur
