// The host's base classes of objects with properties: reference count and interfaces; values and curves by the static
// map of the class; aliases. Implemented by sdk/effects.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "IDSProperties.h"
#include "RefCount.h"

namespace vblur {

class CDSBasePropertyContainer : public IDSProperties {
 public:
  CDSBasePropertyContainer& operator=(const CDSBasePropertyContainer&) = delete;

  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override;
  std::uint32_t Release() override;

 protected:
  // A new object has one reference.
  CDSBasePropertyContainer() = default;
  CDSBasePropertyContainer(const CDSBasePropertyContainer&) : CDSBasePropertyContainer() {}
  virtual ~CDSBasePropertyContainer() = default;

  // Finds an interface by its id, without adding a reference; null if there is none.
  virtual void* FindInterface(const GUID& iid);

 private:
  RefCount references_;
};

class CDSPropertyContainer : public CDSBasePropertyContainer {
 public:
  HRESULT GetName(char16_t* buffer, std::int32_t capacity) override;
  HRESULT GetDescription(char16_t* buffer, std::int32_t capacity) override;
  HRESULT GetPicture(HBITMAP* picture) override;

  HRESULT GetValue(const GUID& property, DSVariant* value) override;
  HRESULT PutValue(const GUID& property, const DSVariant& value) override;
  HRESULT GetValueAt(const GUID& property, double time, double* value) override;
  HRESULT PutValueAt(const GUID& property, double time, const DSVariant& value) override;
  HRESULT PutCurve(const GUID& property, const DSCurve& curve) override;
  HRESULT GetCurve(const GUID& property, const DSCurve** curve) override;
  HRESULT RemoveCurve(const GUID& property) override;

  // A copy has no listeners.
  HRESULT Advise(IDSPropertyNotify* notify) override;
  HRESULT Unadvise(IDSPropertyNotify* notify) override;

 protected:
  CDSPropertyContainer() = default;
  // Does not copy curves: see CopyAnimation.
  CDSPropertyContainer(const CDSPropertyContainer& other) : CDSBasePropertyContainer(other) {}

  // Notifies the listeners. `object` and `parameters` are unused.
  HRESULT OnPropertyChanged(const GUID& property, const DSVariant* value, IUnknown* object, const void* parameters,
                            std::int32_t parameterCount, std::uint32_t flags);
  // The curve's value at a time, or the plain value without a curve.
  virtual double GetValueDirect(const GUID& property, double plainValue, double time) const;
  // These two give no notice: the class does when all of its values are set.
  void CopyAnimation(const CDSPropertyContainer& from) { curves_ = from.curves_; }
  void RemoveAnimation() { curves_.clear(); }

  // The id behind an alias, or the id itself.
  virtual const GUID& Resolve(const GUID& property) const { return property; }

 private:
  const CDSPropertiesMapEntry* FindEntry(const GUID& property);

  std::map<GUID, DSCurve> curves_;
  std::vector<IDSPropertyNotify*> notified_;
};

class CDSAliasedPropertyContainer : public CDSPropertyContainer {
 public:
  // Also kWrongArgument for an alias that is already in use as an id.
  HRESULT AddAlias(const GUID& alias, const GUID& property) override;

 protected:
  const GUID& Resolve(const GUID& property) const override;

 private:
  std::map<GUID, GUID> aliases_;
};

}  // namespace vblur
