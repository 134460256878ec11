// What the host's image effects are beside IDSImageEffect. The effect uses none of their operations: a host asks
// for these interfaces to learn that the base class plays the part.
#pragma once

#include "Com.h"

namespace vblur {

// Reads the output of other effects under further names.
class IDSGraphDataAliases : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A815}");

 protected:
  ~IDSGraphDataAliases() = default;
};

// Changes with time.
class IDSTimeDependency : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A816}");

 protected:
  ~IDSTimeDependency() = default;
};

// May run on the host's own hardware.
class IDSHWEffects : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A817}");

 protected:
  ~IDSHWEffects() = default;
};

// Has objects with properties of their own.
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
