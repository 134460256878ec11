// The factory of one of the server's classes. Free-threaded: it answers IMarshal, and creates one object at a time.
#pragma once

#include <atomic>
#include <mutex>
#include <new>

#include "platform/Com.h"
#include "platform/RefCount.h"

namespace vblur {

// T has a default constructor and starts with one reference. The class's pointer to the server's lock count is set when
// its first factory is made; each factory counts towards it. The two numbers are 0: no aggregation, no singleton.
template <class T, std::int32_t aggregates = 0, std::int32_t isSingle = 0>
class CDsClassFactory : public IClassFactory {
 public:
  static_assert(aggregates == 0 && isSingle == 0);

  static inline std::atomic<std::atomic<std::int32_t>*> lockCount = nullptr;

  explicit CDsClassFactory(std::atomic<std::int32_t>& serverLocks) {
    lockCount.store(&serverLocks);
    serverLocks.fetch_add(1);
  }
  CDsClassFactory(const CDsClassFactory&) = delete;
  CDsClassFactory& operator=(const CDsClassFactory&) = delete;

  HRESULT QueryInterface(const GUID& iid, void** result) override {
    if (result == nullptr) return kNullPointer;
    *result = nullptr;
    if (iid == IMarshal::kIid) return QueryMarshaler(iid, result);
    if (iid != IUnknown::kIid && iid != IClassFactory::kIid) return kNoInterface;
    *result = static_cast<IClassFactory*>(this);
    CDsClassFactory::AddRef();
    return kOk;
  }

  std::uint32_t AddRef() override { return references_.Add(); }

  std::uint32_t Release() override {
    const std::uint32_t left = references_.Drop();
    if (left == 0) delete this;
    return left;
  }

  HRESULT CreateInstance(IUnknown* outer, const GUID& iid, void** result) override {
    if (result == nullptr) return kNullPointer;
    const std::lock_guard hold(creation_);
    *result = nullptr;
    T* object = nullptr;
    CreateObject(object);
    if (object == nullptr) return kOutOfMemory;
    const HRESULT answer = outer == nullptr ? object->QueryInterface(iid, result) : kNoAggregation;
    object->Release();
    return answer;
  }

  HRESULT LockServer(bool lock) override {
    lockCount.load()->fetch_add(lock ? 1 : -1);
    return kOk;
  }

 protected:
  virtual ~CDsClassFactory() {
    if (marshaler_ != nullptr) marshaler_->Release();
    lockCount.load()->fetch_sub(1);
  }

  // Null when out of memory.
  virtual void CreateObject(T*& result) {
    try {
      result = new T();
    } catch (const std::bad_alloc&) {
      result = nullptr;
    }
  }

 private:
  HRESULT QueryMarshaler(const GUID& iid, void** result) {
    const std::lock_guard hold(creation_);
    if (marshaler_ == nullptr) {
      if (const HRESULT made = CoCreateFreeThreadedMarshaler(this, &marshaler_); made < 0) return made;
    }
    return marshaler_->QueryInterface(iid, result);
  }

  RefCount references_;
  CRITICAL_SECTION creation_;
  IUnknown* marshaler_ = nullptr;
};

}  // namespace vblur
