// The host's base classes of image effects with several inputs. Implemented by sdk/effects.
#pragma once

#include "CDSImageEffect.h"
#include "IDSEffectRoles.h"

namespace vblur {

class CDSImageEffectEx : public CDSImageEffect, public IDSGraphDataAliases, public IDSTimeDependency {
 public:
  HRESULT QueryInterface(const GUID& iid, void** result) override {
    return CDSBasePropertyContainer::QueryInterface(iid, result);
  }
  std::uint32_t AddRef() override { return CDSBasePropertyContainer::AddRef(); }
  std::uint32_t Release() override { return CDSBasePropertyContainer::Release(); }

 protected:
  void* FindInterface(const GUID& iid) override;
};

class CDSImageMIEffect : public CDSImageEffectEx, public IDSImageMIEffect {
 public:
  HRESULT QueryInterface(const GUID& iid, void** result) override {
    return CDSBasePropertyContainer::QueryInterface(iid, result);
  }
  std::uint32_t AddRef() override { return CDSBasePropertyContainer::AddRef(); }
  std::uint32_t Release() override { return CDSBasePropertyContainer::Release(); }

 protected:
  void* FindInterface(const GUID& iid) override;
};

}  // namespace vblur
