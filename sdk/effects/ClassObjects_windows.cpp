#include "sdk/effects/ClassObjects.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "platform/ComPtr.h"
#include "platform/RefCount.h"
#include "sdk/effects/Catalogue.h"

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

std::mutex addedLock;
std::vector<AddedServer> added;

// Makes the server's objects. It asks the server at each object, which therefore need not stay loaded for it.
class AskingFactory final : public IClassFactory {
 public:
  AskingFactory(const GUID& clsid, DllGetClassObjectFunction* getClassObject)
      : clsid_(clsid), getClassObject_(getClassObject) {}

  HRESULT QueryInterface(const GUID& iid, void** result) override {
    if (result == nullptr) return kNullPointer;
    *result = nullptr;
    if (iid != IUnknown::kIid && iid != IClassFactory::kIid) return kNoInterface;
    *result = static_cast<IClassFactory*>(this);
    AskingFactory::AddRef();
    return kOk;
  }
  std::uint32_t AddRef() override { return references_.Add(); }
  std::uint32_t Release() override {
    const std::uint32_t left = references_.Drop();
    if (left == 0) delete this;
    return left;
  }
  HRESULT CreateInstance(IUnknown* outer, const GUID& iid, void** result) override {
    ComPtr<IClassFactory> factory;
    const HRESULT found = getClassObject_(clsid_, IClassFactory::kIid, factory.Receive());
    return found == kOk ? factory->CreateInstance(outer, iid, result) : found;
  }
  HRESULT LockServer(bool lock) override {
    ComPtr<IClassFactory> factory;
    const HRESULT found = getClassObject_(clsid_, IClassFactory::kIid, factory.Receive());
    return found == kOk ? factory->LockServer(lock) : found;
  }

 private:
  ~AskingFactory() = default;

  RefCount references_;
  const GUID clsid_;
  DllGetClassObjectFunction* const getClassObject_;
};

HRESULT Register(const GUID& clsid, DllGetClassObjectFunction* getClassObject, DWORD& number) {
  const auto factory = ComPtr<IClassFactory>::Own(new AskingFactory(clsid, getClassObject));
  return ::CoRegisterClassObject(reinterpret_cast<const ::GUID&>(clsid), reinterpret_cast<::IUnknown*>(factory.get()),
                                 CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &number);
}

void Withdraw(const AddedServer& server) {
  for (const DWORD number : server.registered)
    ::CoRevokeClassObject(number);
  if (server.initialised) ::CoUninitialize();
}

}  // namespace

HRESULT AddServer(DllGetClassObjectFunction* getClassObject) {
  AddedServer server{getClassObject, {}, SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))};
  for (const RegisteredClass& entry : CurrentCatalogue().Classes()) {
    DWORD number = 0;
    if (const HRESULT result = Register(entry.clsid, getClassObject, number); result < 0) {
      Withdraw(server);
      return result;
    }
    server.registered.push_back(number);
  }
  const std::lock_guard hold(addedLock);
  added.insert(added.begin(), std::move(server));
  return kOk;
}

void RemoveServer(DllGetClassObjectFunction* getClassObject) {
  AddedServer server;
  {
    const std::lock_guard hold(addedLock);
    const auto found = std::ranges::find(added, getClassObject, &AddedServer::getClassObject);
    if (found == added.end()) return;
    server = std::move(*found);
    added.erase(found);
  }
  Withdraw(server);
}

}  // namespace vblur::host
