#include "host/hosted/EffectServer.h"

#include <array>
#include <string>

#include "host/base/Failure.h"
#include "host/base/HostFolder.h"
#include "host/base/Utf8.h"
#include "host/hosted/CallTrace.h"
#include "sdk/effects/Catalogue.h"
#include "sdk/effects/ClassObjects.h"

namespace vblur::host {

EffectServer::EffectServer(const std::filesystem::path& file) : file_(file), library_(file, "the effect") {
  KeepClassesInProcess(true);
  getClassObject_ = library_.Find<DllGetClassObjectFunction>("DllGetClassObject");
  auto* const enter = library_.Find<DllRegisterServerFunction>("DllRegisterServer");
  std::string missing;
  if (getClassObject_ == nullptr || enter == nullptr) {
    missing = "it is no server: expected DllGetClassObject and DllRegisterServer";
  } else if (const HRESULT result = enter(); result < 0) {
    missing = "it cannot register its classes (" + FormatResult(result) + ")";
  } else {
    missing = Offer();
  }
  if (missing.empty()) return;
  library_.Unload();
  library_.Refuse(missing);
}

// Empty, or why it is of no use: then none of its classes stays.
std::string EffectServer::Offer() {
  std::string missing = "it offers no image effect";
  const auto effects = CurrentCatalogue().EffectsOf(families::kFilter);
  if (!effects.empty()) {
    effect_ = effects.back().clsid;
    const HRESULT result = AddServer(getClassObject_);
    if (result >= 0) return {};
    missing = "the system does not take its classes (" + FormatResult(result) + ")";
  }
  Unregister();
  return missing;
}

void EffectServer::Unregister() {
  if (auto* const leave = library_.Find<DllUnregisterServerFunction>("DllUnregisterServer"); leave != nullptr) leave();
}

EffectServer::~EffectServer() {
  RemoveServer(getClassObject_);
  Unregister();
  auto* const mayUnload = library_.Find<DllCanUnloadNowFunction>("DllCanUnloadNow");
  if (mayUnload != nullptr && mayUnload() == kOk) library_.Unload();
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
  Refuse(ExitCode::SomeFramesFailed, Utf8Of(file_), "the server cannot make the effect (" + FormatResult(result) + ")");
}

std::filesystem::path DefaultServerFile() {
  return HostFolder() / VBLUR_SERVER_NAME;
}

}  // namespace vblur::host
