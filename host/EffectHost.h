// What the stand-alone host answers to the effect's questions: animated values from a property store,
// and the project's sizes.
#pragma once

#include <optional>

#include "host/Job.h"
#include "host/PropertyStore.h"
#include "platform/IDSEffectHost.h"

namespace vblur::host {

// Reads only, so that effects on several threads may ask the same one.
class EffectHost : public IDSEffectHost {
 public:
  // Borrows the store. Without project sizes every content property is unreadable.
  EffectHost(const PropertyStore& properties, const std::optional<ProjectSizes>& project)
      : properties_(properties), project_(project) {}

  // True for properties that hold a curve.
  bool AnimatedValue(const GUID& property, double time, double& value) const override;
  // kFailed when the sizes are unreadable, kWrongArgument for a key that is none of the four,
  // kNullPointer for none at all.
  HRESULT ContentProperty(const char* key, double& value) const override;

 private:
  const PropertyStore& properties_;
  std::optional<ProjectSizes> project_;
};

}  // namespace vblur::host
