#include "platform/CDSImageMIEffect.h"

namespace vblur {

void* CDSImageEffectEx::FindInterface(const GUID& iid) {
  if (iid == IDSGraphDataAliases::kIid) return static_cast<IDSGraphDataAliases*>(this);
  if (iid == IDSTimeDependency::kIid) return static_cast<IDSTimeDependency*>(this);
  return CDSImageEffect::FindInterface(iid);
}

void* CDSImageMIEffect::FindInterface(const GUID& iid) {
  return iid == IDSImageMIEffect::kIid ? static_cast<IDSImageMIEffect*>(this) : CDSImageEffectEx::FindInterface(iid);
}

}  // namespace vblur
