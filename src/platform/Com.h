// The part of COM that server, effect and host use: reference-counted interfaces found by GUID, class factories,
// and the services that a class factory needs. On Windows the system provides them, elsewhere sdk/effects.
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

  // Returns the interface with a reference added; kNoInterface and null for one that the object lacks, kNullPointer for
  // a null result.
  virtual HRESULT QueryInterface(const GUID& iid, void** result) = 0;
  // Return the new count, for tests and traces only.
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;

 protected:
  // Objects are destroyed by their last Release.
  ~IUnknown() = default;
};

class IClassFactory : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{00000001-0000-0000-C000-000000000046}");

  // Creates an object. kNoAggregation with an outer object.
  virtual HRESULT CreateInstance(IUnknown* outer, const GUID& iid, void** result) = 0;
  // Keeps the server loaded while locks outnumber unlocks.
  virtual HRESULT LockServer(bool lock) = 0;

 protected:
  ~IClassFactory() = default;
};

#ifdef _WIN32
// How an object may be called from other apartments: the system's, which alone calls its own operations.
class IMarshal : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{00000003-0000-0000-C000-000000000046}");

 protected:
  ~IMarshal() = default;
};
#else
// How an object may be called from other threads. Off Windows there are no apartments: any thread calls directly.
class IMarshal : public IUnknown {
 public:
  static constexpr GUID kIid = MakeGuid("{00000003-0000-0000-C000-000000000046}");

  // The same object, for any thread of this process, with a reference added.
  virtual HRESULT UnmarshalDirect(const GUID& iid, void** result) = 0;

 protected:
  ~IMarshal() = default;
};
#endif

// Makes a marshaler that is owned by `outer` and does not keep it alive.
HRESULT CoCreateFreeThreadedMarshaler(IUnknown* outer, IUnknown** marshaler);

// Creates an object of a class that a loaded server offers, or on Windows a registered one; kNoSuchClass if none does.
// `context` is CLSCTX_INPROC_SERVER.
inline constexpr std::uint32_t CLSCTX_INPROC_SERVER = 1;
HRESULT CoCreateInstance(const GUID& clsid, IUnknown* outer, std::uint32_t context, const GUID& iid, void** result);

// Recursive.
#ifdef _WIN32
// The system's: the cross compiler's std::recursive_mutex allocates memory at the first lock that it never gives back.
class CRITICAL_SECTION {
 public:
  CRITICAL_SECTION();
  ~CRITICAL_SECTION();
  CRITICAL_SECTION(const CRITICAL_SECTION&) = delete;
  CRITICAL_SECTION& operator=(const CRITICAL_SECTION&) = delete;

  void lock();
  void unlock();

 private:
  alignas(void*) unsigned char section_[40];
};
#else
using CRITICAL_SECTION = std::recursive_mutex;
#endif

// What a server library exports.
extern "C" {
using DllCanUnloadNowFunction = HRESULT();
using DllGetClassObjectFunction = HRESULT(const GUID& clsid, const GUID& iid, void** result);
using DllRegisterServerFunction = HRESULT();
using DllUnregisterServerFunction = HRESULT();
}

}  // namespace vblur
