// The host as an effect sees it: the project's content properties.
#pragma once

#include "DsTypes.h"

namespace vblur {

// The content keys that the effect reads, all 64-bit floats.
inline constexpr const char* kProjectUserSizeX = "Project Frame User Size (X)";
inline constexpr const char* kProjectUserSizeY = "Project Frame User Size (Y)";
inline constexpr const char* kProjectWorldSizeX = "Project Frame World Size (X)";
inline constexpr const char* kProjectWorldSizeY = "Project Frame World Size (Y)";

class IDSEffectHost {
 public:
  virtual ~IDSEffectHost() = default;

  // On failure the value is unchanged.
  virtual HRESULT ContentProperty(const char* key, double& value) const = 0;
};

}  // namespace vblur
