#include "platform/CDSPlugInEffect.h"

namespace vblur {

HRESULT CDSPlugInEffect::Init() {
  return kOk;
}

HRESULT CDSPlugInEffect::Term() {
  pages_.clear();
  return kOk;
}

HRESULT CDSPlugInEffect::GetPageCount(std::int32_t* count) {
  if (count == nullptr) return kNullPointer;
  *count = static_cast<std::int32_t>(pages_.size());
  return kOk;
}

HRESULT CDSPlugInEffect::GetPage(std::int32_t number, GUID* clsid) {
  if (clsid == nullptr) return kNullPointer;
  if (number < 0 || static_cast<std::size_t>(number) >= pages_.size()) return kWrongArgument;
  *clsid = pages_[static_cast<std::size_t>(number)];
  return kOk;
}

void* CDSPlugInEffect::FindInterface(const GUID& iid) {
  if (iid == IDSGeneric::kIid) return static_cast<IDSGeneric*>(this);
  if (iid == IDSPresetPersistStream::kIid) return static_cast<IDSPresetPersistStream*>(this);
  return CDSAliasedPropertyContainer::FindInterface(iid);
}

}  // namespace vblur
