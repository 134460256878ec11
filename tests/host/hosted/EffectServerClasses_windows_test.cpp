// The classes of a loaded server, as the system's COM finds them.
#include <thread>

#include <gtest/gtest.h>

#include "host/hosted/EffectServer.h"
#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "sdk/effects/Catalogue.h"
#include "sdk/effects/ClassObjects.h"
#include "tests/support/host/FailureOf.h"
// It includes the system's header.
#include "tests/support/ImportHook_windows.h"

#include <objbase.h>

namespace vblur::host {
namespace {

constexpr GUID kBlurClass = MakeGuid("{9D2E2FA1-AE89-11D5-9414-0800690F2F3F}");

HRESULT CreateEffectByClass(ComPtr<IDSImageEffect>& effect) {
  return CoCreateInstance(kBlurClass, nullptr, CLSCTX_INPROC_SERVER, IDSImageEffect::kIid, effect.Receive());
}

TEST(EffectServerClasses, AreGivenToTheSystemWhileTheServerIsLoaded) {
  Catalogue catalogue;
  UseCatalogue(&catalogue);
  ComPtr<IDSImageEffect> effect;
  for (int i = 0; i < 2; ++i) {
    const EffectServer server(DefaultServerFile());
    EXPECT_EQ(CreateEffectByClass(effect), kOk);
    ASSERT_TRUE(effect);
    EXPECT_EQ(effect->IsFormatSupported(MFIF_RGBA_S2_14), kOk);
    effect.reset();
    EXPECT_EQ(CoCreateInstance(kBlurClass, nullptr, CLSCTX_INPROC_SERVER, IClassFactory::kIid, effect.Receive()),
              kNoInterface);
    EXPECT_EQ(CoCreateInstance(kBlurClass, nullptr, CLSCTX_INPROC_SERVER, IUnknown::kIid, nullptr), kNullPointer);
  }
  EXPECT_NE(CreateEffectByClass(effect), kOk);
  UseCatalogue(nullptr);
}

HRESULT LackingServer(const GUID&, const GUID&, void** result) {
  *result = nullptr;
  return kNoSuchClass;
}

TEST(EffectServerClasses, AreAskedOfTheServerAtEachObject) {
  Catalogue catalogue;
  UseCatalogue(&catalogue);
  catalogue.AddClass(kBlurClass, nullptr, 0);
  AddServer(&LackingServer);
  ComPtr<IDSImageEffect> effect;
  EXPECT_EQ(CreateEffectByClass(effect), kNoSuchClass);
  RemoveServer(&LackingServer);
  EXPECT_NE(CreateEffectByClass(effect), kOk);
  UseCatalogue(nullptr);
}

int classesLeft = 0;
int classesTaken = 0;

::HRESULT WINAPI TakeSome(REFCLSID clsid, LPUNKNOWN object, DWORD context, DWORD flags, DWORD* number) {
  if (classesLeft-- <= 0) return E_OUTOFMEMORY;
  const ::HRESULT result = ::CoRegisterClassObject(clsid, object, context, flags, number);
  if (SUCCEEDED(result)) ++classesTaken;
  return result;
}

::HRESULT WINAPI GiveBack(DWORD number) {
  --classesTaken;
  return ::CoRevokeClassObject(number);
}

TEST(EffectServerClasses, AreAllGivenToTheSystemOrNone) {
  Catalogue catalogue;
  UseCatalogue(&catalogue);
  const HINSTANCE library = ::GetModuleHandleW(L"vblur_sdk_effects.dll");
  ASSERT_NE(library, nullptr);
  {
    const test::HookedImport registering(library, "ole32.dll", "CoRegisterClassObject", &TakeSome);
    const test::HookedImport revoking(library, "ole32.dll", "CoRevokeClassObject", &GiveBack);
    for (const int taken : {0, 3, 6}) {
      classesLeft = taken;
      const auto failure = CaughtFailure([] { EffectServer{DefaultServerFile()}; });
      ASSERT_TRUE(failure);
      EXPECT_EQ(failure->Code(), ExitCode::CannotRead);
      EXPECT_NE(std::string(failure->what()).find("the system does not take its classes (0x8007000e)"),
                std::string::npos)
          << failure->what();
      EXPECT_EQ(classesTaken, 0);
      EXPECT_TRUE(catalogue.Classes().empty());
    }
  }
  ComPtr<IDSImageEffect> effect;
  EXPECT_NE(CreateEffectByClass(effect), kOk);
  UseCatalogue(nullptr);
}

TEST(EffectServerClasses, LockAndUnlockTheServer) {
  const EffectServer server(DefaultServerFile());
  const HINSTANCE library = ::GetModuleHandleW(L"V_Blur.dll");
  ASSERT_NE(library, nullptr);
  auto* const canUnload =
      reinterpret_cast<DllCanUnloadNowFunction*>(reinterpret_cast<void*>(::GetProcAddress(library, "DllCanUnloadNow")));
  ASSERT_NE(canUnload, nullptr);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(::CoGetClassObject(reinterpret_cast<const ::GUID&>(kBlurClass), CLSCTX_INPROC_SERVER, nullptr,
                               reinterpret_cast<const ::GUID&>(IClassFactory::kIid), factory.Receive()),
            S_OK);
  EXPECT_EQ(canUnload(), kOk) << "the system's class object asks the server at each object";
  ComPtr<IClassFactory> servers;
  ASSERT_EQ(server.GetClassObject(kBlurClass, IClassFactory::kIid, servers.Receive()), kOk);
  EXPECT_EQ(factory->LockServer(true), kOk);
  EXPECT_EQ(canUnload(), kFalse) << "one more than the server's own factory, not one less";
  servers.reset();
  EXPECT_EQ(canUnload(), kFalse) << "locked";
  EXPECT_EQ(factory->LockServer(false), kOk);
  EXPECT_EQ(canUnload(), kOk);
}

// Calls on a thread of its own, which uses COM for nothing else.
template <class Body>
void OnNewThread(const Body& body) {
  std::thread(body).join();
}

void AddAndRemove() {
  EXPECT_EQ(AddServer(&LackingServer), kOk);
  RemoveServer(&LackingServer);
}

TEST(EffectServerClasses, LeaveTheThreadsApartmentAsItWas) {
  Catalogue catalogue;
  UseCatalogue(&catalogue);
  catalogue.AddClass(kBlurClass, nullptr, 0);
  OnNewThread([] {
    AddAndRemove();
    EXPECT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK) << "it had none";
    AddAndRemove();
    EXPECT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE) << "its own";
    ::CoUninitialize();
    ::CoUninitialize();
  });
  OnNewThread([] {
    const test::HookedImport registering(::GetModuleHandleW(L"vblur_sdk_effects.dll"), "ole32.dll",
                                         "CoRegisterClassObject", &TakeSome);
    classesLeft = 0;
    EXPECT_EQ(AddServer(&LackingServer), kOutOfMemory);
    EXPECT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK) << "a refused server needs none";
    ::CoUninitialize();
  });
  UseCatalogue(nullptr);
}

}  // namespace
}  // namespace vblur::host
