#include "sdk/effects/OwnCatalogue.h"

#include <array>
#include <atomic>
#include <string>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <objbase.h>
#include <windows.h>

namespace vblur::host {

namespace {

std::atomic<bool> keepsToItself = false;

std::wstring KeyOf(const GUID& clsid) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(reinterpret_cast<const ::GUID&>(clsid), text.data(), static_cast<int>(text.size()));
  return L"Software\\Classes\\CLSID\\" + std::wstring(text.data());
}

LSTATUS Write(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  return RegSetKeyValueW(root, key.c_str(), name, REG_SZ, text.c_str(), bytes);
}

std::wstring FileOf(HMODULE module) {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring file(kLongestPath, L'\0');
  file.resize(GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size())));
  return file;
}

LSTATUS EnterBelow(HKEY root, const GUID& clsid, HMODULE module, const std::u16string& description) {
  const std::wstring key = KeyOf(clsid);
  const std::wstring server = key + L"\\InprocServer32";
  LSTATUS done = Write(root, key, nullptr, {description.begin(), description.end()});
  if (done == ERROR_SUCCESS) done = Write(root, server, nullptr, FileOf(module));
  // Its objects may be made on any thread: the factories are free-threaded.
  if (done == ERROR_SUCCESS) done = Write(root, server, L"ThreadingModel", L"Both");
  return done;
}

// For all users where the program may do that, else for this one.
HRESULT EnterInRegistry(const GUID& clsid, HMODULE module, const std::u16string& description) {
  LSTATUS done = EnterBelow(HKEY_LOCAL_MACHINE, clsid, module, description);
  if (done == ERROR_ACCESS_DENIED) done = EnterBelow(HKEY_CURRENT_USER, clsid, module, description);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(done));
}

HRESULT RemoveFromRegistry(const GUID& clsid) {
  const std::wstring key = KeyOf(clsid);
  const LSTATUS ofAll = RegDeleteTreeW(HKEY_LOCAL_MACHINE, key.c_str());
  const LSTATUS ofUser = RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
  return ofAll == ERROR_SUCCESS || ofUser == ERROR_SUCCESS ? kOk : kFailed;
}

class SystemCatalogue final : public Catalogue {
 public:
  HRESULT AddClass(const GUID& clsid, HMODULE module, std::int32_t descriptionString) override {
    const HRESULT added = Catalogue::AddClass(clsid, module, descriptionString);
    if (added < 0 || keepsToItself.load()) return added;
    const HRESULT entered = EnterInRegistry(clsid, module, Classes().back().description);
    if (entered < 0) Catalogue::RemoveClass(clsid);
    return entered;
  }

  // Another process may have registered it.
  HRESULT RemoveClass(const GUID& clsid) override {
    const HRESULT removed = Catalogue::RemoveClass(clsid);
    if (keepsToItself.load()) return removed;
    return RemoveFromRegistry(clsid) == kOk || removed == kOk ? kOk : kFailed;
  }

  // Families are known to this process alone; who unregisters need not be who registered.
  HRESULT RemoveFamilies(const GUID& clsid) override {
    const HRESULT removed = Catalogue::RemoveFamilies(clsid);
    return keepsToItself.load() ? removed : kOk;
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
