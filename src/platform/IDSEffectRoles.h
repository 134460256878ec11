// Further interfaces of the host's image effects. The effect uses none of their operations; hosts ask for them.
#pragma once

#include "Com.h"

namespace vblur {

// Reads other effects' output under aliases.
class IDSGraphDataAliases : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A815}");

 protected:
  ~IDSGraphDataAliases() = default;
};

// Depends on time.
class IDSTimeDependency : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A816}");

 protected:
  ~IDSTimeDependency() = default;
};

// May run on the host's hardware.
class IDSHWEffects : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A817}");

 protected:
  ~IDSHWEffects() = default;
};

// Owns objects with properties.
class IDSChildPropertyOwner : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A818}");

 protected:
  ~IDSChildPropertyOwner() = default;
};

// Takes several inputs.
class IDSImageMIEffect : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A819}");

 protected:
  ~IDSImageMIEffect() = default;
};

}  // namespace vblur
