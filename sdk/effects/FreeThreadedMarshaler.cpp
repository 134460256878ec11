#include <atomic>
#include <new>

#include "platform/Com.h"

namespace vblur {

namespace {

class FreeThreadedMarshaler final : public IMarshal {
 public:
  explicit FreeThreadedMarshaler(IUnknown* outer) : outer_(outer) {}

  HRESULT QueryInterface(const GUID& iid, void** result) override {
    if (result == nullptr) return kNullPointer;
    *result = nullptr;
    if (iid != IUnknown::kIid && iid != IMarshal::kIid) return kNoInterface;
    *result = static_cast<IMarshal*>(this);
    FreeThreadedMarshaler::AddRef();
    return kOk;
  }
  std::uint32_t AddRef() override { return references_.fetch_add(1, std::memory_order_relaxed) + 1; }
  std::uint32_t Release() override {
    const std::uint32_t left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) delete this;
    return left;
  }
  HRESULT UnmarshalDirect(const GUID& iid, void** result) override { return outer_->QueryInterface(iid, result); }

 private:
  ~FreeThreadedMarshaler() = default;

  std::atomic<std::uint32_t> references_{1};
  IUnknown* outer_;
};

}  // namespace

HRESULT CoCreateFreeThreadedMarshaler(IUnknown* outer, IUnknown** marshaler) {
  if (marshaler == nullptr) return kNullPointer;
  *marshaler = nullptr;
  if (outer == nullptr) return kWrongArgument;
  *marshaler = new (std::nothrow) FreeThreadedMarshaler(outer);
  return *marshaler == nullptr ? kOutOfMemory : kOk;
}

}  // namespace vblur
