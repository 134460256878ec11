#include "sdk/effects/Catalogue.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "platform/Registration.h"
#include "sdk/effects/OwnCatalogue.h"

namespace vblur::host {

namespace {

std::atomic<Catalogue*> replacement = nullptr;

std::u16string TextOf(HMODULE module, std::int32_t id) {
  std::array<char16_t, 260> text{};
  LoadStringW(module, id, text.data(), static_cast<std::int32_t>(text.size()));
  return text.data();
}

template <class Entries>
HRESULT RemoveEntry(Entries& entries, const GUID& clsid) {
  return std::erase_if(entries, [&](const auto& entry) { return entry.clsid == clsid; }) != 0 ? kOk : kFailed;
}

}  // namespace

HRESULT Catalogue::AddClass(const GUID& clsid, HMODULE module, std::int32_t descriptionString) {
  const std::lock_guard hold(lock_);
  RemoveEntry(classes_, clsid);
  classes_.push_back({clsid, module, descriptionString, TextOf(module, descriptionString)});
  return kOk;
}

HRESULT Catalogue::RemoveClass(const GUID& clsid) {
  const std::lock_guard hold(lock_);
  return RemoveEntry(classes_, clsid);
}

HRESULT Catalogue::AddFamilies(const RegisteredFamilies& entry) {
  const std::lock_guard hold(lock_);
  RemoveEntry(families_, entry.clsid);
  families_.push_back(entry);
  return kOk;
}

HRESULT Catalogue::RemoveFamilies(const GUID& clsid) {
  const std::lock_guard hold(lock_);
  return RemoveEntry(families_, clsid);
}

std::vector<RegisteredClass> Catalogue::Classes() const {
  const std::lock_guard hold(lock_);
  return classes_;
}

std::vector<RegisteredFamilies> Catalogue::EffectsOf(const GUID& family) const {
  const std::lock_guard hold(lock_);
  std::vector<RegisteredFamilies> found;
  std::ranges::copy_if(families_, std::back_inserter(found), [&](const RegisteredFamilies& entry) {
    return std::ranges::find(entry.families, family) != entry.families.end();
  });
  return found;
}

Catalogue& CurrentCatalogue() {
  static Catalogue& own = OwnCatalogue();
  Catalogue* other = replacement.load(std::memory_order_acquire);
  return other == nullptr ? own : *other;
}

void UseCatalogue(Catalogue* catalogue) {
  replacement.store(catalogue, std::memory_order_release);
}

}  // namespace vblur::host

namespace vblur {

HRESULT DSRegisterCOMEffect(const GUID& clsid, HMODULE module, std::int32_t descriptionString) {
  return host::CurrentCatalogue().AddClass(clsid, module, descriptionString);
}

HRESULT DSUnregisterCOMEffect(const GUID& clsid) {
  return host::CurrentCatalogue().RemoveClass(clsid);
}

HRESULT DSRegisterObjectFamilies(const GUID& clsid, std::int32_t count, const GUID* families, std::int32_t kind,
                                 const char16_t* name, HMODULE) {
  if (families == nullptr || name == nullptr || count < 0) return kWrongArgument;
  return host::CurrentCatalogue().AddFamilies({clsid, {families, families + count}, kind, name});
}

HRESULT DSUnregisterObjectFamilies(const GUID& clsid, std::int32_t, const GUID*, HMODULE) {
  return host::CurrentCatalogue().RemoveFamilies(clsid);
}

}  // namespace vblur
