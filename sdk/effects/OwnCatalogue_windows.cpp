#include "sdk/effects/OwnCatalogue.h"

#include <algorithm>
#include <atomic>
#include <string>

#include "sdk/effects/RegistryClasses_windows.h"

#include <windows.h>

namespace vblur::host {

namespace {

std::atomic<bool> keepsToItself = false;

// Empty for a module that is none.
std::wstring FileOf(HMODULE module) {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring file(kLongestPath, L'\0');
  file.resize(GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

class SystemCatalogue final : public Catalogue {
 public:
  HRESULT AddClass(const GUID& clsid, HMODULE module, std::int32_t descriptionString) override {
    const HRESULT added = Catalogue::AddClass(clsid, module, descriptionString);
    if (added < 0 || keepsToItself.load()) return added;
    const HRESULT entered = EnterClass(SystemRoots(), {clsid, FileOf(module), DescriptionOf(clsid)});
    if (entered < 0) Catalogue::RemoveClass(clsid);
    return entered;
  }

  // Another process may have registered it.
  HRESULT RemoveClass(const GUID& clsid) override {
    const HRESULT removed = Catalogue::RemoveClass(clsid);
    if (keepsToItself.load()) return removed;
    const HRESULT left = host::RemoveClass(SystemRoots(), clsid);
    return left == kFailed && removed == kOk ? kOk : left;
  }

  // Families are known to this process alone; who unregisters need not be who registered.
  HRESULT RemoveFamilies(const GUID& clsid) override {
    const HRESULT removed = Catalogue::RemoveFamilies(clsid);
    return keepsToItself.load() ? removed : kOk;
  }

 private:
  std::wstring DescriptionOf(const GUID& clsid) const {
    const std::vector<RegisteredClass> classes = Classes();
    const auto found = std::ranges::find(classes, clsid, &RegisteredClass::clsid);
    return found == classes.end() ? std::wstring() : std::wstring(found->description.begin(), found->description.end());
  }
};

}  // namespace

Catalogue& OwnCatalogue() {
  static SystemCatalogue catalogue;
  return catalogue;
}

void KeepClassesInProcess(bool keep) {
  keepsToItself.store(keep);
}

}  // namespace vblur::host
