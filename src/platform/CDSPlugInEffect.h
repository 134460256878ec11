// The host's base class of all effects: Init, Term and the list of property pages. Implemented by sdk/effects.
#pragma once

#include <vector>

#include "CDSPropertyContainer.h"

namespace vblur {

class IDSGeneric : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A812}");

  virtual HRESULT Init() = 0;
  virtual HRESULT Term() = 0;
  // The property pages' class ids, in the order of display.
  virtual HRESULT GetPageCount(std::int32_t* count) = 0;
  // kWrongArgument for a number out of range.
  virtual HRESULT GetPage(std::int32_t number, GUID* clsid) = 0;

 protected:
  ~IDSGeneric() = default;
};

class IDSPresetPersistStream : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A813}");

  // The class that a preset belongs to.
  virtual HRESULT GetClassID(GUID* clsid) = 0;

 protected:
  ~IDSPresetPersistStream() = default;
};

class CDSPlugInEffect : public CDSAliasedPropertyContainer, public IDSGeneric, public IDSPresetPersistStream {
 public:
  HRESULT QueryInterface(const GUID& iid, void** result) override {
    return CDSBasePropertyContainer::QueryInterface(iid, result);
  }
  std::uint32_t AddRef() override { return CDSBasePropertyContainer::AddRef(); }
  std::uint32_t Release() override { return CDSBasePropertyContainer::Release(); }

  HRESULT Init() override;
  HRESULT Term() override;
  HRESULT GetPageCount(std::int32_t* count) override;
  HRESULT GetPage(std::int32_t number, GUID* clsid) override;

 protected:
  CDSPlugInEffect() = default;
  // A copy starts without pages; it adds those of its own kind.
  CDSPlugInEffect(const CDSPlugInEffect& other)
      : CDSAliasedPropertyContainer(other), IDSGeneric(), IDSPresetPersistStream() {}

  void* FindInterface(const GUID& iid) override;
  void AddPage(const GUID& clsid) { pages_.push_back(clsid); }

 private:
  std::vector<GUID> pages_;
};

}  // namespace vblur
