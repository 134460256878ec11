// The server's entry points: class objects, unloading and registration.
#include <algorithm>
#include <array>
#include <iterator>

#include "effect/ProcessSettings.h"
#include "platform/Com.h"
#include "platform/DSFxInfo.h"
#include "platform/Registration.h"
#include "properties/ClassIds.h"
#include "resources/Numbers.h"
#include "server/ServerClasses.h"
#include "server/ServerModule.h"

namespace vblur {
namespace {

constexpr std::int32_t kKindEffect = 1;

// The families of the effect, in the order of registration.
constexpr std::array kFamilies = {families::kRegisteredOnly, families::kFilter, families::kTransition, families::kPaint,
                                  families::kFilterThird};
constexpr auto kFamilyCount = static_cast<std::int32_t>(kFamilies.size());

}  // namespace

extern "C" {

HRESULT DllCanUnloadNow() {
  if (ServerLocks().load() != 0) return kFalse;
  StopRenderThreads();
  return kOk;
}

HRESULT DllGetClassObject(const GUID& clsid, const GUID& iid, void** result) {
  if (result == nullptr) return kNullPointer;
  *result = nullptr;
  const auto found = std::ranges::find(kServerClasses, clsid, &ServerClass::clsid);
  if (found == kServerClasses.end()) return kNoSuchClass;
  IClassFactory* factory = found->makeFactory();
  if (factory == nullptr) return kOutOfMemory;
  const HRESULT answer = factory->QueryInterface(iid, result);
  factory->Release();
  return answer;
}

HRESULT DllRegisterServer() {
  for (const ServerClass& entry : kServerClasses) {
    const HRESULT result = DSRegisterCOMEffect(entry.clsid, ServerModule(), entry.description);
    if (result < 0) return result;
  }
  std::array<char16_t, 260> name{};
  LoadStringW(ServerModule(), resources::strings::kName, name.data(), static_cast<std::int32_t>(name.size()));
  return DSRegisterObjectFamilies(classes::kBlur, kFamilyCount, kFamilies.data(), kKindEffect, name.data(),
                                  ServerModule());
}

// A failure does not stop the others; the last registered entry that failed is reported.
HRESULT DllUnregisterServer() {
  std::array<HRESULT, kServerClasses.size() + 1> results{};
  std::ranges::transform(kServerClasses, results.begin(),
                         [](const ServerClass& entry) { return DSUnregisterCOMEffect(entry.clsid); });
  results.back() = DSUnregisterObjectFamilies(classes::kBlur, kFamilyCount, kFamilies.data(), ServerModule());
  const auto failed = std::find_if(results.rbegin(), results.rend(), [](HRESULT result) { return result < 0; });
  return failed == results.rend() ? kOk : *failed;
}

}  // extern "C"

}  // namespace vblur
