#include "platform/Com.h"

#include "sdk/system/SystemTypes_windows.h"

namespace vblur {

namespace {

// An interface is its table of functions: QueryInterface, AddRef and Release first, in one calling convention.
::IUnknown* SystemsOwn(IUnknown* object) {
  return reinterpret_cast<::IUnknown*>(object);
}

const ::GUID& SystemsOwn(const GUID& id) {
  static_assert(sizeof(::GUID) == sizeof(GUID) && alignof(::GUID) <= alignof(GUID));
  return reinterpret_cast<const ::GUID&>(id);
}

::CRITICAL_SECTION* SystemsOwn(unsigned char* section) {
  return reinterpret_cast<::CRITICAL_SECTION*>(section);
}

}  // namespace

HRESULT CoCreateFreeThreadedMarshaler(IUnknown* outer, IUnknown** marshaler) {
  if (marshaler == nullptr) return kNullPointer;
  *marshaler = nullptr;
  if (outer == nullptr) return kWrongArgument;
  return ::CoCreateFreeThreadedMarshaler(SystemsOwn(outer), reinterpret_cast<::IUnknown**>(marshaler));
}

HRESULT CoCreateInstance(const GUID& clsid, IUnknown* outer, std::uint32_t context, const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  return ::CoCreateInstance(SystemsOwn(clsid), SystemsOwn(outer), context, SystemsOwn(iid), result);
}

CRITICAL_SECTION::CRITICAL_SECTION() {
  static_assert(sizeof section_ == sizeof(::CRITICAL_SECTION));
  ::InitializeCriticalSection(SystemsOwn(section_));
}

CRITICAL_SECTION::~CRITICAL_SECTION() {
  ::DeleteCriticalSection(SystemsOwn(section_));
}

void CRITICAL_SECTION::lock() {
  ::EnterCriticalSection(SystemsOwn(section_));
}

void CRITICAL_SECTION::unlock() {
  ::LeaveCriticalSection(SystemsOwn(section_));
}

}  // namespace vblur
