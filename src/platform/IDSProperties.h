// An object's properties as its host sees them: descriptions, values, curves and change notices; also the object's own
// name and picture.
#pragma once

#include <cstdint>

#include "Com.h"
#include "DSCurve.h"
#include "DSVariant.h"
#include "PropertiesMap.h"

namespace vblur {

// Special ids: a change of every property, and no property.
inline constexpr GUID GUID_ALL_PROPERTIES = MakeGuid("{5B192010-2C0D-11D0-82AB-00A0243F1013}");
inline constexpr GUID GUID_NO_PROPERTY = MakeGuid("{96BBD590-4EBD-11D0-82B5-00A0243F1013}");

// A listener, called on the thread that makes the change.
class IDSPropertyNotify {
 public:
  virtual ~IDSPropertyNotify() = default;

  // `value` is the property's value at all times, as stored; null for GUID_ALL_PROPERTIES, and for a property that has
  // or had a curve.
  virtual void OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) = 0;
};

// Operations on a property take its id or an alias; kWrongArgument for any other id, kNullPointer for a null pointer.
// One thread at a time.
class IDSProperties : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A811}");

  // Zero-terminated texts of at most `capacity` characters; kFailed when the module lacks them.
  virtual HRESULT GetName(char16_t* buffer, std::int32_t capacity) = 0;
  virtual HRESULT GetDescription(char16_t* buffer, std::int32_t capacity) = 0;
  virtual HRESULT GetPicture(HBITMAP* picture) = 0;

  // The number of properties in the map, without its parents.
  virtual HRESULT GetStaticPropertyCount(std::int32_t* count) = 0;
  virtual HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) = 0;

  // The plain value. A number for a property of whole values is truncated; kWrongArgument for infinity or NaN
  // for any other.
  virtual HRESULT GetValue(const GUID& property, DSVariant* value) = 0;
  virtual HRESULT PutValue(const GUID& property, const DSVariant& value) = 0;
  // The curve's value at a time, or the plain value without a curve.
  virtual HRESULT GetValueAt(const GUID& property, double time, double* value) = 0;
  // A property with a curve gets a key at the time, or another value for the key that is there; one without its plain
  // value.
  virtual HRESULT PutValueAt(const GUID& property, double time, const DSVariant& value) = 0;
  // Sets a curve in place of the plain value. kFailed for a property that is not animated. The curve is not checked: it
  // must have at least one key, strictly rising times and finite numbers.
  virtual HRESULT PutCurve(const GUID& property, const DSCurve& curve) = 0;
  // The curve, valid until the property changes; kFalse and null without one.
  virtual HRESULT GetCurve(const GUID& property, const DSCurve** curve) = 0;
  virtual HRESULT RemoveCurve(const GUID& property) = 0;

  // Adds an alias.
  virtual HRESULT AddAlias(const GUID& alias, const GUID& property) = 0;

  // Adds and removes a listener. Borrowed: remove it before it is destroyed.
  virtual HRESULT Advise(IDSPropertyNotify* notify) = 0;
  virtual HRESULT Unadvise(IDSPropertyNotify* notify) = 0;

 protected:
  ~IDSProperties() = default;
};

}  // namespace vblur
