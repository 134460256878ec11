#include <new>

#include "platform/Com.h"
#include "platform/RefCount.h"

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
  std::uint32_t AddRef() override { return references_.Add(); }
  std::uint32_t Release() override {
    const std::uint32_t left = references_.Drop();
    if (left == 0) delete this;
    return left;
  }
  HRESULT UnmarshalDirect(const GUID& iid, void** result) override { return outer_->QueryInterface(iid, result); }

 private:
  ~FreeThreadedMarshaler() = default;

  RefCount references_;
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
