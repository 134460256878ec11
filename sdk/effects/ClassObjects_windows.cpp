#include "sdk/effects/ClassObjects.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "platform/ComPtr.h"
#include "sdk/effects/Catalogue.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <objbase.h>
#include <windows.h>

namespace vblur::host {

namespace {

// A server's class objects, given to the system for the thread's apartment.
struct AddedServer {
  DllGetClassObjectFunction* getClassObject = nullptr;
  std::vector<DWORD> registered;
  bool initialised = false;  // COM, for the thread
};

std::mutex lock;
std::vector<AddedServer> added;

DWORD Register(const GUID& clsid, DllGetClassObjectFunction* getClassObject) {
  ComPtr<IClassFactory> factory;
  DWORD number = 0;
  if (getClassObject(clsid, IClassFactory::kIid, factory.Receive()) != kOk) return 0;
  const ::HRESULT result =
      ::CoRegisterClassObject(reinterpret_cast<const ::GUID&>(clsid), reinterpret_cast<::IUnknown*>(factory.get()),
                              CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &number);
  return SUCCEEDED(result) ? number : 0;
}

}  // namespace

void AddServer(DllGetClassObjectFunction* getClassObject) {
  AddedServer server{getClassObject, {}, SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))};
  for (const RegisteredClass& entry : CurrentCatalogue().Classes()) {
    if (const DWORD number = Register(entry.clsid, getClassObject); number != 0) server.registered.push_back(number);
  }
  const std::lock_guard hold(lock);
  added.insert(added.begin(), std::move(server));
}

void RemoveServer(DllGetClassObjectFunction* getClassObject) {
  AddedServer server;
  {
    const std::lock_guard hold(lock);
    const auto found = std::ranges::find(added, getClassObject, &AddedServer::getClassObject);
    if (found == added.end()) return;
    server = std::move(*found);
    added.erase(found);
  }
  for (const DWORD number : server.registered)
    ::CoRevokeClassObject(number);
  if (server.initialised) ::CoUninitialize();
}

}  // namespace vblur::host
