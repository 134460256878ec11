// An object's properties as the host sees them: what they are, their values and curves, and who wants to
// know when they change. The object's own name and picture belong to it as well.
#pragma once

#include <cstdint>

#include "Com.h"
#include "DSCurve.h"
#include "DSVariant.h"
#include "PropertiesMap.h"

namespace vblur {

// The two ids with a meaning of their own: a change of everything, and of nothing in particular.
inline constexpr GUID GUID_ALL_PROPERTIES = MakeGuid("{5B192010-2C0D-11D0-82AB-00A0243F1013}");
inline constexpr GUID GUID_NO_PROPERTY = MakeGuid("{96BBD590-4EBD-11D0-82B5-00A0243F1013}");

// Told of changes, on the thread that changes.
class IDSPropertyNotify {
 public:
  virtual ~IDSPropertyNotify() = default;

  // `value` is null when the change has no value of its own, as for GUID_ALL_PROPERTIES.
  virtual void OnPropertyChanged(const GUID& property, const DSVariant* value, std::uint32_t flags) = 0;
};

// Operations on one property take its id or an alias of it, and answer kWrongArgument for any other id,
// kNullPointer where a pointer is wanted. One thread at a time.
class IDSProperties : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{3B0DA5A1-5C2A-4E0F-9F7C-6B1D52C0A811}");

  // Texts with the zero behind them, into a buffer of `capacity` characters; kFailed when the object's
  // module does not have them.
  virtual HRESULT GetName(char16_t* buffer, std::int32_t capacity) = 0;
  virtual HRESULT GetDescription(char16_t* buffer, std::int32_t capacity) = 0;
  virtual HRESULT GetPicture(const ModuleBitmap** picture) = 0;

  // How many properties the map has without its parents'.
  virtual HRESULT GetStaticPropertyCount(std::int32_t* count) = 0;
  virtual HRESULT GetStaticPropertiesMap(const CDSPropertiesMap** map) = 0;

  // The plain value. A number for a property of whole values is truncated; kWrongArgument for infinity or NaN
  // for any other.
  virtual HRESULT GetValue(const GUID& property, DSVariant* value) = 0;
  virtual HRESULT PutValue(const GUID& property, const DSVariant& value) = 0;
  // The value at a time: of the curve, else the plain one.
  virtual HRESULT GetValueAt(const GUID& property, double time, double* value) = 0;
  // A curve instead of the plain value. kFailed for a property that is not animated; the curve is taken
  // as it is, with at least one key, times strictly rising and finite numbers.
  virtual HRESULT PutCurve(const GUID& property, const DSCurve& curve) = 0;
  // The curve, valid until the property changes; kFalse and null when there is none.
  virtual HRESULT GetCurve(const GUID& property, const DSCurve** curve) = 0;
  virtual HRESULT RemoveCurve(const GUID& property) = 0;

  // A further id for a property.
  virtual HRESULT AddAlias(const GUID& alias, const GUID& property) = 0;

  // Adds and removes somebody to tell. Borrowed: it must be removed before it goes.
  virtual HRESULT Advise(IDSPropertyNotify* notify) = 0;
  virtual HRESULT Unadvise(IDSPropertyNotify* notify) = 0;

 protected:
  ~IDSProperties() = default;
};

}  // namespace vblur
