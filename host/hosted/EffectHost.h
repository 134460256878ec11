// The content properties of the project, for effects.
#pragma once

#include <optional>

#include "host/jobs/Job.h"
#include "platform/IDSEffectHost.h"

namespace vblur::host {

// Immutable, so effects on several threads may share one.
class EffectHost : public IDSEffectHost {
 public:
  // Without project sizes every content property is unreadable.
  explicit EffectHost(const std::optional<ProjectSizes>& project) : project_(project) {}

  // kFailed when the sizes are unreadable, kWrongArgument for a key that is none of the four,
  // kNullPointer for none at all.
  HRESULT ContentProperty(const char* key, double& value) const override;

 private:
  std::optional<ProjectSizes> project_;
};

}  // namespace vblur::host
