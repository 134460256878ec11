#include "platform/CDSPropertyContainer.h"

#include <algorithm>
#include <cmath>

namespace vblur {

namespace {

constexpr std::int32_t kAnimatedCapability = 5;

bool IsFinite(const DSCurveKey& key) {
  return std::isfinite(key.time) && std::isfinite(key.value);
}

// The curve with a key added, or replaced if there is one at its time.
DSCurve WithKey(const DSCurve& curve, DSCurveKey key) {
  DSCurve result = curve;
  const auto at = std::ranges::lower_bound(result.keys, key.time, {}, &DSCurveKey::time);
  if (at != result.keys.end() && at->time == key.time) {
    at->value = key.value;
  } else {
    result.keys.insert(at, key);
  }
  return result;
}

}  // namespace

HRESULT CDSBasePropertyContainer::QueryInterface(const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = FindInterface(iid);
  if (*result == nullptr) return kNoInterface;
  CDSBasePropertyContainer::AddRef();
  return kOk;
}

std::uint32_t CDSBasePropertyContainer::AddRef() {
  return references_.Add();
}

std::uint32_t CDSBasePropertyContainer::Release() {
  const std::uint32_t left = references_.Drop();
  if (left == 0) delete this;
  return left;
}

void* CDSBasePropertyContainer::FindInterface(const GUID& iid) {
  return iid == IUnknown::kIid || iid == IDSProperties::kIid ? static_cast<IDSProperties*>(this) : nullptr;
}

HRESULT CDSPropertyContainer::GetName(char16_t*, std::int32_t) {
  return kFailed;
}

HRESULT CDSPropertyContainer::GetDescription(char16_t*, std::int32_t) {
  return kFailed;
}

HRESULT CDSPropertyContainer::GetPicture(HBITMAP*) {
  return kFailed;
}

const CDSPropertiesMapEntry* CDSPropertyContainer::FindEntry(const GUID& property) {
  const CDSPropertiesMap* map = nullptr;
  if (GetStaticPropertiesMap(&map) != kOk) return nullptr;
  const GUID& id = Resolve(property);
  for (; map != nullptr; map = map->parent) {
    const auto found =
        std::ranges::find_if(map->entries, [&](const CDSPropertiesMapEntry& entry) { return entry.param.id == id; });
    if (found != map->entries.end()) return &*found;
  }
  return nullptr;
}

HRESULT CDSPropertyContainer::GetValue(const GUID& property, DSVariant* value) {
  if (value == nullptr) return kNullPointer;
  const CDSPropertiesMapEntry* entry = FindEntry(property);
  if (entry == nullptr) return kWrongArgument;
  const void* member = entry->member(*this);
  value->type = entry->param.type;
  value->number = 0.0;
  value->whole = 0;
  if (entry->param.type == DSValueType::Float64) {
    value->number = *static_cast<const double*>(member);
  } else {
    value->whole = *static_cast<const std::int32_t*>(member);
  }
  return kOk;
}

HRESULT CDSPropertyContainer::PutValue(const GUID& property, const DSVariant& value) {
  const CDSPropertiesMapEntry* entry = FindEntry(property);
  if (entry == nullptr) return kWrongArgument;
  const bool isFloat = entry->param.type == DSValueType::Float64;
  if (isFloat && !std::isfinite(value.AsNumber())) return kWrongArgument;
  void* member = entry->member(*this);
  if (isFloat) {
    *static_cast<double*>(member) = value.AsNumber();
  } else {
    *static_cast<std::int32_t*>(member) = value.AsWhole();
  }
  DSVariant stored;
  if (const HRESULT read = GetValue(entry->param.id, &stored); read != kOk) return read;
  // Behind a curve the plain value is not what the property is at any time.
  const DSVariant* const shown = curves_.contains(entry->param.id) ? nullptr : &stored;
  return OnPropertyChanged(entry->param.id, shown, nullptr, nullptr, 0, 0);
}

HRESULT CDSPropertyContainer::GetValueAt(const GUID& property, double time, double* value) {
  if (value == nullptr) return kNullPointer;
  DSVariant plain;
  if (const HRESULT result = GetValue(property, &plain); result != kOk) return result;
  *value = GetValueDirect(Resolve(property), plain.AsNumber(), time);
  return kOk;
}

HRESULT CDSPropertyContainer::PutValueAt(const GUID& property, double time, const DSVariant& value) {
  const DSCurve* curve = nullptr;
  if (const HRESULT found = GetCurve(property, &curve); found < 0) return found;
  if (curve == nullptr) return PutValue(property, value);
  return PutCurve(property, WithKey(*curve, {time, value.AsNumber()}));
}

HRESULT CDSPropertyContainer::PutCurve(const GUID& property, const DSCurve& curve) {
  const CDSPropertiesMapEntry* entry = FindEntry(property);
  if (entry == nullptr || curve.keys.empty() || !std::ranges::all_of(curve.keys, IsFinite)) return kWrongArgument;
  if (entry->param.capability != kAnimatedCapability) return kFailed;
  curves_.insert_or_assign(entry->param.id, curve);
  return OnPropertyChanged(entry->param.id, nullptr, nullptr, nullptr, 0, 0);
}

HRESULT CDSPropertyContainer::GetCurve(const GUID& property, const DSCurve** curve) {
  if (curve == nullptr) return kNullPointer;
  *curve = nullptr;
  const CDSPropertiesMapEntry* entry = FindEntry(property);
  if (entry == nullptr) return kWrongArgument;
  const auto found = curves_.find(entry->param.id);
  if (found == curves_.end()) return kFalse;
  *curve = &found->second;
  return kOk;
}

HRESULT CDSPropertyContainer::RemoveCurve(const GUID& property) {
  const CDSPropertiesMapEntry* entry = FindEntry(property);
  if (entry == nullptr) return kWrongArgument;
  if (curves_.erase(entry->param.id) == 0) return kFalse;
  return OnPropertyChanged(entry->param.id, nullptr, nullptr, nullptr, 0, 0);
}

HRESULT CDSPropertyContainer::Advise(IDSPropertyNotify* notify) {
  if (notify == nullptr) return kNullPointer;
  notified_.push_back(notify);
  return kOk;
}

HRESULT CDSPropertyContainer::Unadvise(IDSPropertyNotify* notify) {
  return std::erase(notified_, notify) != 0 ? kOk : kWrongArgument;
}

HRESULT CDSPropertyContainer::OnPropertyChanged(const GUID& property, const DSVariant* value, IUnknown*, const void*,
                                                std::int32_t, std::uint32_t flags) {
  // A copy: listeners may add or remove listeners.
  for (IDSPropertyNotify* notify : std::vector(notified_)) {
    if (std::ranges::find(notified_, notify) != notified_.end()) notify->OnPropertyChanged(property, value, flags);
  }
  return kOk;
}

double CDSPropertyContainer::GetValueDirect(const GUID& property, double plainValue, double time) const {
  const auto curve = curves_.find(property);
  return curve == curves_.end() ? plainValue : curve->second.At(time);
}

HRESULT CDSAliasedPropertyContainer::AddAlias(const GUID& alias, const GUID& property) {
  DSVariant value;
  if (GetValue(alias, &value) == kOk || GetValue(property, &value) != kOk) return kWrongArgument;
  aliases_.emplace(alias, Resolve(property));
  return kOk;
}

const GUID& CDSAliasedPropertyContainer::Resolve(const GUID& property) const {
  const auto alias = aliases_.find(property);
  return alias == aliases_.end() ? property : alias->second;
}

}  // namespace vblur
