#include "sdk/effects/ClassObjects.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "platform/ComPtr.h"

namespace vblur::host {

namespace {

struct LoadedServers {
  std::mutex lock;
  std::vector<DllGetClassObjectFunction*> newestFirst;
};

LoadedServers& Loaded() {
  static LoadedServers loaded;
  return loaded;
}

// A copy: a server may load others during the call.
std::vector<DllGetClassObjectFunction*> ServersToAsk() {
  LoadedServers& loaded = Loaded();
  const std::lock_guard hold(loaded.lock);
  return loaded.newestFirst;
}

}  // namespace

HRESULT AddServer(DllGetClassObjectFunction* getClassObject) {
  LoadedServers& loaded = Loaded();
  const std::lock_guard hold(loaded.lock);
  loaded.newestFirst.insert(loaded.newestFirst.begin(), getClassObject);
  return kOk;
}

void RemoveServer(DllGetClassObjectFunction* getClassObject) {
  LoadedServers& loaded = Loaded();
  const std::lock_guard hold(loaded.lock);
  const auto found = std::ranges::find(loaded.newestFirst, getClassObject);
  if (found != loaded.newestFirst.end()) loaded.newestFirst.erase(found);
}

}  // namespace vblur::host

namespace vblur {

HRESULT CoCreateInstance(const GUID& clsid, IUnknown* outer, std::uint32_t context, const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = nullptr;
  if ((context & CLSCTX_INPROC_SERVER) == 0) return kNoSuchClass;
  for (DllGetClassObjectFunction* const getClassObject : host::ServersToAsk()) {
    ComPtr<IClassFactory> factory;
    const HRESULT found = getClassObject(clsid, IClassFactory::kIid, factory.Receive());
    if (found == kNoSuchClass) continue;
    return found == kOk ? factory->CreateInstance(outer, iid, result) : found;
  }
  return kNoSuchClass;
}

}  // namespace vblur
