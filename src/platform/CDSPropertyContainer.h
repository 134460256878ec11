// The host's base classes of everything that has properties: reference count and interfaces, values and
// curves by the static map of the class, and further ids for them. The host's SDK library implements
// them.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "IDSProperties.h"

namespace vblur {

class CDSBasePropertyContainer : public IDSProperties {
 public:
  CDSBasePropertyContainer& operator=(const CDSBasePropertyContainer&) = delete;

  HRESULT QueryInterface(const GUID& iid, void** result) override;
  std::uint32_t AddRef() override;
  std::uint32_t Release() override;

 protected:
  // A new object has one reference, its maker's.
  CDSBasePropertyContainer() = default;
  CDSBasePropertyContainer(const CDSBasePropertyContainer&) : CDSBasePropertyContainer() {}
  virtual ~CDSBasePropertyContainer() = default;

  // The interfaces of derived classes, without a reference added; null for one that there is not.
  virtual void* FindInterface(const GUID& iid);

 private:
  std::atomic<std::uint32_t> references_{1};
};

class CDSPropertyContainer : public CDSBasePropertyContainer {
 public:
  HRESULT GetName(char16_t* buffer, std::int32_t capacity) override;
  HRESULT GetDescription(char16_t* buffer, std::int32_t capacity) override;
  HRESULT GetPicture(const ModuleBitmap** picture) override;

  HRESULT GetValue(const GUID& property, DSVariant* value) override;
  HRESULT PutValue(const GUID& property, const DSVariant& value) override;
  HRESULT GetValueAt(const GUID& property, double time, double* value) override;
  HRESULT PutCurve(const GUID& property, const DSCurve& curve) override;
  HRESULT GetCurve(const GUID& property, const DSCurve** curve) override;
  HRESULT RemoveCurve(const GUID& property) override;

  // An object that is told is told of its own changes alone; a copy starts with nobody to tell.
  HRESULT Advise(IDSPropertyNotify* notify) override;
  HRESULT Unadvise(IDSPropertyNotify* notify) override;

 protected:
  CDSPropertyContainer() = default;
  // Curves are not copied: that is CopyAnimation's.
  CDSPropertyContainer(const CDSPropertyContainer& other) : CDSBasePropertyContainer(other) {}

  // Tells those who want to know. `object` and `parameters` belong to changes of lists; nobody here
  // reads them.
  HRESULT OnPropertyChanged(const GUID& property, const DSVariant* value, IUnknown* object, const void* parameters,
                            std::int32_t parameterCount, std::uint32_t flags);
  // The value of an animated property at a time, or the plain value when it is not animated.
  virtual double GetValueDirect(const GUID& property, double plainValue, double time) const;
  void CopyAnimation(const CDSPropertyContainer& from) { curves_ = from.curves_; }
  void RemoveAnimation() { curves_.clear(); }

  // The id that an alias stands for, else the id itself.
  virtual const GUID& Resolve(const GUID& property) const { return property; }

 private:
  const CDSPropertiesMapEntry* FindEntry(const GUID& property);

  std::map<GUID, DSCurve> curves_;
  std::vector<IDSPropertyNotify*> notified_;
};

class CDSAliasedPropertyContainer : public CDSPropertyContainer {
 public:
  // kWrongArgument as well for an alias that is already an id of something.
  HRESULT AddAlias(const GUID& alias, const GUID& property) override;

 protected:
  const GUID& Resolve(const GUID& property) const override;

 private:
  std::map<GUID, GUID> aliases_;
};

}  // namespace vblur
