// The part of COM that the server, the effect and a host meet in: reference-counted interfaces asked for
// by GUID, class factories, and the few services that a class factory needs. On Windows these come from
// the system; elsewhere the host's SDK library implements them.
#pragma once

#include <cstdint>
#include <mutex>

#include "DsTypes.h"

namespace vblur {

inline constexpr HRESULT kNoInterface = static_cast<HRESULT>(0x80004002u);
inline constexpr HRESULT kNoAggregation = static_cast<HRESULT>(0x80040110u);
inline constexpr HRESULT kNoSuchClass = static_cast<HRESULT>(0x80040111u);

// Every interface names its id as kIid. Counts are atomic: any thread may add and drop references.
class IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{00000000-0000-0000-C000-000000000046}");

  // The object's interface of that id, with a reference added; kNoInterface and null for one that it
  // does not have, kNullPointer without a place for the result.
  virtual HRESULT QueryInterface(const GUID& iid, void** result) = 0;
  // The new count, for tests and traces only.
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;

 protected:
  // Objects end with their last reference.
  ~IUnknown() = default;
};

class IClassFactory : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{00000001-0000-0000-C000-000000000046}");

  // A new object's interface. kNoAggregation with an outer object.
  virtual HRESULT CreateInstance(IUnknown* outer, const GUID& iid, void** result) = 0;
  // Keeps the server loaded while locks outnumber unlocks.
  virtual HRESULT LockServer(bool lock) = 0;

 protected:
  ~IClassFactory() = default;
};

// How an object may be called from other threads. Off Windows there are no apartments: the free-threaded
// marshaler says that any thread may call the object directly.
class IMarshal : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{00000003-0000-0000-C000-000000000046}");

  // The same object, for a caller on any thread of this process, with a reference added.
  virtual HRESULT UnmarshalDirect(const GUID& iid, void** result) = 0;

 protected:
  ~IMarshal() = default;
};

// A marshaler for `outer`, which it does not keep alive: the outer object owns the marshaler.
HRESULT CoCreateFreeThreadedMarshaler(IUnknown* outer, IUnknown** marshaler);

// An object of a class that a loaded server offers; kNoSuchClass where none does. `context` is
// CLSCTX_INPROC_SERVER.
inline constexpr std::uint32_t CLSCTX_INPROC_SERVER = 1;
HRESULT CoCreateInstance(const GUID& clsid, IUnknown* outer, std::uint32_t context, const GUID& iid, void** result);

// A lock that its own thread may take again.
using CRITICAL_SECTION = std::recursive_mutex;

// What a server library exports.
extern "C" {
using DllCanUnloadNowFunction = HRESULT();
using DllGetClassObjectFunction = HRESULT(const GUID& clsid, const GUID& iid, void** result);
using DllRegisterServerFunction = HRESULT();
using DllUnregisterServerFunction = HRESULT();
}

}  // namespace vblur
