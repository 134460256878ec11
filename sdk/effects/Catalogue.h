// What servers have registered: their classes, and the families under which effects are offered.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "platform/DsTypes.h"
#include "platform/Module.h"

namespace vblur::host {

struct RegisteredClass {
  GUID clsid;
  HMODULE module = nullptr;
  std::int32_t descriptionString = 0;
  std::u16string description;  // empty when the module has no such text
};

struct RegisteredFamilies {
  GUID clsid;
  std::vector<GUID> families;
  std::int32_t kind = 0;
  std::u16string name;
};

// A class that is registered again replaces what stood there. From any thread.
class Catalogue {
 public:
  virtual ~Catalogue() = default;

  virtual HRESULT AddClass(const GUID& clsid, HMODULE module, std::int32_t descriptionString);
  virtual HRESULT RemoveClass(const GUID& clsid);
  virtual HRESULT AddFamilies(const RegisteredFamilies& entry);
  virtual HRESULT RemoveFamilies(const GUID& clsid);

  // In the order of registration.
  std::vector<RegisteredClass> Classes() const;
  // The effects that are offered under a family, in the order of registration.
  std::vector<RegisteredFamilies> EffectsOf(const GUID& family) const;

 private:
  mutable std::mutex lock_;
  std::vector<RegisteredClass> classes_;
  std::vector<RegisteredFamilies> families_;
};

// The catalogue that DSRegisterCOMEffect and its like write to: the process's own, or another in its
// place. Borrowed; null goes back to the process's own.
Catalogue& CurrentCatalogue();
void UseCatalogue(Catalogue* catalogue);

}  // namespace vblur::host
