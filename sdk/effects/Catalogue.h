// The registered classes, and the families that offer effects.
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

// Registering a class again replaces its entry. From any thread.
class Catalogue {
 public:
  virtual ~Catalogue() = default;

  virtual HRESULT AddClass(const GUID& clsid, HMODULE module, std::int32_t descriptionString);
  virtual HRESULT RemoveClass(const GUID& clsid);
  virtual HRESULT AddFamilies(const RegisteredFamilies& entry);
  virtual HRESULT RemoveFamilies(const GUID& clsid);

  // For listings of what is registered. In the order of registration.
  std::vector<RegisteredClass> Classes() const;
  // The effects of a family, in the order of registration.
  std::vector<RegisteredFamilies> EffectsOf(const GUID& family) const;

 private:
  mutable std::mutex lock_;
  std::vector<RegisteredClass> classes_;
  std::vector<RegisteredFamilies> families_;
};

// The catalogue that DSRegisterCOMEffect and the like write to: the process's own, or another. Borrowed; null restores
// the process's own.
Catalogue& CurrentCatalogue();
void UseCatalogue(Catalogue* catalogue);

// On Windows classes that are entered in the process's own catalogue are entered in the system's registry too, where
// the system's CoCreateInstance finds them in every program, unless the program keeps them to itself, as hosts do that
// ask servers by AddServer. Elsewhere no program finds another's classes.
void KeepClassesInProcess(bool keep);

}  // namespace vblur::host
