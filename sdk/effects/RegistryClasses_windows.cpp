#include "sdk/effects/RegistryClasses_windows.h"

#include <array>
#include <utility>

#include <objbase.h>
#include <windows.h>

namespace vblur::host {

namespace {

// A key that is open, closed at the end.
struct OpenKey {
  OpenKey() = default;
  ~OpenKey() {
    if (key != nullptr) RegCloseKey(key);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;

  HKEY key = nullptr;
};

std::wstring KeyOf(const GUID& clsid) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(reinterpret_cast<const ::GUID&>(clsid), text.data(), static_cast<int>(text.size()));
  return L"Software\\Classes\\CLSID\\" + std::wstring(text.data());
}

LSTATUS EnterBelow(HKEY root, const ServerEntry& entry) {
  RegistryWrites writes(root);
  const std::wstring key = KeyOf(entry.clsid);
  const std::wstring server = key + L"\\InprocServer32";
  LSTATUS done = writes.Set(key, nullptr, entry.description);
  if (done == ERROR_SUCCESS) done = writes.Set(server, nullptr, entry.file);
  // Its objects may be made on any thread: the factories are free-threaded.
  if (done == ERROR_SUCCESS) done = writes.Set(server, L"ThreadingModel", L"Both");
  if (done == ERROR_SUCCESS) writes.Keep();
  return done;
}

}  // namespace

RegistryWrites::~RegistryWrites() {
  for (; !undo_.empty(); undo_.pop_back()) {
    const Undo& undo = undo_.back();
    if (undo.isKey) {
      RegDeleteKeyW(root_, undo.key.c_str());
    } else if (undo.wasThere) {
      RegSetKeyValueW(root_, undo.key.c_str(), undo.name.c_str(), undo.type, undo.bytes.data(),
                      static_cast<DWORD>(undo.bytes.size()));
    } else {
      RegDeleteKeyValueW(root_, undo.key.c_str(), undo.name.c_str());
    }
  }
}

long RegistryWrites::Set(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  if (const LSTATUS made = MakeKey(key); made != ERROR_SUCCESS) return made;
  OpenKey open;
  if (const LSTATUS opened = RegOpenKeyExW(root_, key.c_str(), 0, KEY_QUERY_VALUE | KEY_SET_VALUE, &open.key);
      opened != ERROR_SUCCESS)
    return opened;
  Undo undo{key, false, name == nullptr ? L"" : name, false, 0, {}};
  DWORD size = 0;
  undo.wasThere = RegQueryValueExW(open.key, name, nullptr, &undo.type, nullptr, &size) == ERROR_SUCCESS;
  undo.bytes.resize(size);
  if (undo.wasThere) RegQueryValueExW(open.key, name, nullptr, &undo.type, undo.bytes.data(), &size);
  const auto* const bytes = reinterpret_cast<const BYTE*>(text.c_str());
  const auto length = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  const LSTATUS written = RegSetValueExW(open.key, name, 0, REG_SZ, bytes, length);
  if (written == ERROR_SUCCESS) undo_.push_back(std::move(undo));
  return written;
}

long RegistryWrites::MakeKey(const std::wstring& key) {
  OpenKey open;
  DWORD kind = REG_OPENED_EXISTING_KEY;
  const LSTATUS made = RegCreateKeyExW(root_, key.c_str(), 0, nullptr, 0, KEY_QUERY_VALUE, nullptr, &open.key, &kind);
  if (made == ERROR_SUCCESS && kind == REG_CREATED_NEW_KEY) undo_.push_back({key, true, L"", false, 0, {}});
  return made;
}

RegistryRoots SystemRoots() {
  return {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};
}

HRESULT EnterClass(const RegistryRoots& roots, const ServerEntry& entry) {
  if (entry.file.empty()) return kFailed;
  LSTATUS done = EnterBelow(roots.all, entry);
  if (done == ERROR_ACCESS_DENIED) done = EnterBelow(roots.user, entry);
  return HRESULT_FROM_WIN32(static_cast<DWORD>(done));
}

HRESULT RemoveClass(const RegistryRoots& roots, const GUID& clsid) {
  const std::wstring key = KeyOf(clsid);
  HRESULT result = kFailed;
  for (HKEY const root : {roots.all, roots.user}) {
    const LSTATUS removed = RegDeleteTreeW(root, key.c_str());
    if (removed == ERROR_SUCCESS && result == kFailed) result = kOk;
    if (removed != ERROR_SUCCESS && removed != ERROR_FILE_NOT_FOUND)
      result = HRESULT_FROM_WIN32(static_cast<DWORD>(removed));
  }
  return result;
}

}  // namespace vblur::host
