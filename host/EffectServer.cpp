#include "host/EffectServer.h"

#include <array>
#include <string>
#include <system_error>

#include <dlfcn.h>

#include "host/CallTrace.h"
#include "host/Failure.h"
#include "host/HostFolder.h"
#include "host/sdk/Catalogue.h"
#include "host/sdk/ClassObjects.h"

namespace vblur::host {

namespace {

constexpr const char* kServerName = "V_Blur.so";

[[noreturn]] void Refuse(const std::filesystem::path& file, const std::string& reason) {
  throw Failure(ExitCode::CannotRead, file.string() + ": cannot load the effect: " + reason);
}

}  // namespace

template <class Function>
Function* EffectServer::Find(const char* name) const {
  return reinterpret_cast<Function*>(::dlsym(library_, name));
}

EffectServer::EffectServer(const std::filesystem::path& file) : file_(file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) Refuse(file, "no such file");
  library_ = ::dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr) Refuse(file, ::dlerror());
  getClassObject_ = Find<DllGetClassObjectFunction>("DllGetClassObject");
  auto* const enter = Find<DllRegisterServerFunction>("DllRegisterServer");
  std::string missing;
  if (getClassObject_ == nullptr || enter == nullptr) {
    missing = "it is no server: expected DllGetClassObject and DllRegisterServer";
  } else if (const HRESULT result = enter(); result < 0) {
    missing = "it cannot register its classes (" + FormatResult(result) + ")";
  } else {
    const auto effects = CurrentCatalogue().EffectsOf(families::kFilter);
    if (effects.empty()) missing = "it offers no image effect";
    if (!effects.empty()) effect_ = effects.back().clsid;
  }
  if (missing.empty()) {
    AddServer(getClassObject_);
    return;
  }
  ::dlclose(library_);
  Refuse(file, missing);
}

EffectServer::~EffectServer() {
  RemoveServer(getClassObject_);
  if (auto* const leave = Find<DllUnregisterServerFunction>("DllUnregisterServer"); leave != nullptr) leave();
  auto* const mayUnload = Find<DllCanUnloadNowFunction>("DllCanUnloadNow");
  if (mayUnload != nullptr && mayUnload() == kOk) ::dlclose(library_);
}

HRESULT EffectServer::GetClassObject(const GUID& clsid, const GUID& iid, void** result) const {
  return getClassObject_(clsid, iid, result);
}

ComPtr<IDSImageEffect> EffectServer::CreateEffect() const {
  ComPtr<IClassFactory> factory;
  HRESULT result = GetClassObject(effect_, IClassFactory::kIid, factory.Receive());
  ComPtr<IDSImageEffect> effect;
  if (result == kOk) result = factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive());
  if (result == kOk) return effect;
  throw Failure(ExitCode::SomeFramesFailed,
                file_.string() + ": the server cannot make the effect (" + FormatResult(result) + ")");
}

std::filesystem::path DefaultServerFile() {
  return HostFolder() / kServerName;
}

}  // namespace vblur::host
