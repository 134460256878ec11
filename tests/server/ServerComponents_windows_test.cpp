// The server as the system's COM knows it: registered, made by CoCreateInstance, used from several apartments,
// unloaded.
#include <array>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/IDSProperties.h"
#include "sdk/effects/Catalogue.h"
#include "tests/support/RegistryAccess_windows.h"
// The system's header behind those of the project.
#include "tests/server/LoadedServer_windows.h"

namespace vblur {
namespace {

std::wstring Registered(const GUID& clsid, const wchar_t* value, HKEY root = HKEY_LOCAL_MACHINE) {
  std::array<wchar_t, 1024> text{};
  DWORD size = sizeof text;
  const std::wstring key = ClassKey(clsid) + L"\\InprocServer32";
  if (::RegGetValueW(root, key.c_str(), value, RRF_RT_REG_SZ, nullptr, text.data(), &size) != 0) return L"";
  return text.data();
}

std::wstring RegisteredFile(const GUID& clsid) {
  return Registered(clsid, nullptr);
}

// Registers the classes of the file as the system's own tool does: by its entry point.
class ServerComponents : public testing::Test {
 protected:
  ServerComponents() {
    host::KeepClassesInProcess(false);
    EXPECT_EQ(CallEntryPoint("DllRegisterServer"), kOk);
  }
  ~ServerComponents() override {
    EXPECT_EQ(CallEntryPoint("DllUnregisterServer"), kOk);
    EXPECT_FALSE(IsLoaded());
  }
};

TEST_F(ServerComponents, AllClassesAreEnteredWithTheFileAndItsThreads) {
  for (const GUID& clsid : kRegisteredClasses) {
    const std::wstring file = RegisteredFile(clsid);
    EXPECT_TRUE(file.ends_with(L"\\V_Blur.dll")) << std::string(file.begin(), file.end());
  }
  for (const GUID& clsid : kRegisteredClasses)
    EXPECT_EQ(Registered(clsid, L"ThreadingModel"), L"Both");
  EXPECT_FALSE(IsLoaded());
}

TEST_F(ServerComponents, LeavingRemovesAllClasses) {
  EXPECT_EQ(CallEntryPoint("DllUnregisterServer"), kOk);
  for (const GUID& clsid : kRegisteredClasses)
    EXPECT_EQ(RegisteredFile(clsid), L"");
  EXPECT_LT(CallEntryPoint("DllUnregisterServer"), 0) << "there is nothing to remove";
  EXPECT_EQ(CallEntryPoint("DllRegisterServer"), kOk);
}

TEST_F(ServerComponents, TheSystemMakesAnObjectOfEachClass) {
  const Apartment apartment(COINIT_APARTMENTTHREADED);
  for (const GUID& clsid : kRegisteredClasses)
    EXPECT_TRUE(MakeBySystem<IUnknown>(clsid));
  EXPECT_TRUE(IsLoaded());
  FreeUnusedLibraries();
}

TEST_F(ServerComponents, IsUnloadedWhenNothingIsAlive) {
  const Apartment apartment(COINIT_APARTMENTTHREADED);
  auto effect = MakeBySystem<IDSImageEffect>(classes::kBlur);
  FreeUnusedLibraries();
  EXPECT_TRUE(IsLoaded()) << "an effect lives";
  effect.reset();
  FreeUnusedLibraries();
  EXPECT_FALSE(IsLoaded());
}

TEST_F(ServerComponents, AClassObjectServesTwoApartments) {
  const Apartment apartment(COINIT_APARTMENTTHREADED);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(::CoGetClassObject(System(classes::kBlur), CLSCTX_INPROC_SERVER, nullptr, System(IClassFactory::kIid),
                               factory.Receive()),
            S_OK);
  IStream* stream = nullptr;
  ASSERT_EQ(::CoMarshalInterThreadInterfaceInStream(System(IClassFactory::kIid),
                                                    reinterpret_cast<::IUnknown*>(factory.get()), &stream),
            S_OK);
  std::thread other([&] {
    const Apartment its(COINIT_MULTITHREADED);
    ComPtr<IClassFactory> there;
    ASSERT_EQ(::CoGetInterfaceAndReleaseStream(stream, System(IClassFactory::kIid), there.Receive()), S_OK);
    EXPECT_EQ(there.get(), factory.get()) << "free-threaded: the object itself, no proxy";
    ComPtr<IDSImageEffect> effect;
    EXPECT_EQ(there->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
    EXPECT_TRUE(effect.As<IDSProperties>());
  });
  other.join();
  factory.reset();
  FreeUnusedLibraries();
}

TEST_F(ServerComponents, FactoriesHaveTheSystemsMarshaler) {
  const Apartment apartment(COINIT_MULTITHREADED);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(::CoGetClassObject(System(classes::kHelpPPG), CLSCTX_INPROC_SERVER, nullptr, System(IClassFactory::kIid),
                               factory.Receive()),
            S_OK);
  ComPtr<IUnknown> marshaler;
  ASSERT_EQ(factory->QueryInterface(IMarshal::kIid, marshaler.Receive()), kOk);
  ComPtr<IUnknown> systems;
  ASSERT_EQ(::CoCreateFreeThreadedMarshaler(nullptr, reinterpret_cast<::IUnknown**>(systems.Receive())), S_OK);
  const auto unmarshalClass = [](IUnknown* object) {
    ::IMarshal* asked = nullptr;
    EXPECT_EQ(object->QueryInterface(IMarshal::kIid, reinterpret_cast<void**>(&asked)), kOk);
    ::GUID proxy{};
    EXPECT_EQ(asked->GetUnmarshalClass(System(IUnknown::kIid), asked, MSHCTX_INPROC, nullptr, MSHLFLAGS_NORMAL, &proxy),
              S_OK);
    asked->Release();
    return proxy;
  };
  EXPECT_TRUE(::IsEqualGUID(unmarshalClass(marshaler.get()), unmarshalClass(systems.get())));
  marshaler.reset();
  factory.reset();
  FreeUnusedLibraries();
}

// The machine's part of the registry refuses a class that is there already; the user's too, if asked to.
class ServerComponentsRefused : public testing::Test {
 protected:
  ServerComponentsRefused() { host::KeepClassesInProcess(false); }
  ~ServerComponentsRefused() override {
    for (HKEY const root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
      test::DenyAccess(root, key_, 0);
    CallEntryPoint("DllUnregisterServer");
    EXPECT_EQ(Registered(classes::kHelpPPG, nullptr), L"");
    EXPECT_EQ(Registered(classes::kHelpPPG, nullptr, HKEY_CURRENT_USER), L"");
  }

  const std::wstring key_ = ClassKey(classes::kHelpPPG);
};

TEST_F(ServerComponentsRefused, AreEnteredForTheUser) {
  test::RefuseWriting(HKEY_LOCAL_MACHINE, key_);
  EXPECT_EQ(CallEntryPoint("DllRegisterServer"), kOk);
  EXPECT_EQ(Registered(classes::kHelpPPG, nullptr), L"");
  EXPECT_TRUE(Registered(classes::kHelpPPG, nullptr, HKEY_CURRENT_USER).ends_with(L"\\V_Blur.dll"));
}

TEST_F(ServerComponentsRefused, AreAFailureWhereTheUserIsRefusedToo) {
  test::RefuseWriting(HKEY_LOCAL_MACHINE, key_);
  test::RefuseWriting(HKEY_CURRENT_USER, key_);
  EXPECT_EQ(CallEntryPoint("DllRegisterServer"), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  for (const host::RegisteredClass& entry : host::CurrentCatalogue().Classes())
    EXPECT_NE(entry.clsid, classes::kHelpPPG) << "listed, and entered nowhere";
  EXPECT_EQ(Registered(classes::kHelpPPG, nullptr), L"");
  EXPECT_EQ(Registered(classes::kHelpPPG, nullptr, HKEY_CURRENT_USER), L"");
}

}  // namespace
}  // namespace vblur
