// The server as the system's COM knows it: registered, made by CoCreateInstance, used from several apartments,
// unloaded.
#include <array>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"
#include "platform/IDSImageEffect.h"
#include "platform/IDSProperties.h"
#include "properties/ClassIds.h"
#include "sdk/effects/Catalogue.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <objbase.h>
#include <windows.h>

namespace vblur {
namespace {

constexpr std::array kClasses = {
    classes::kBlur,        classes::kFullBlurPPG, classes::kTransitionBlurPPG, classes::kHvTransitionPPG,
    classes::kHvTInteract, classes::kHelpPPG,     classes::kFullCropPPG};

const ::GUID& System(const GUID& id) {
  return reinterpret_cast<const ::GUID&>(id);
}

bool IsLoaded() {
  return ::GetModuleHandleW(L"V_Blur.dll") != nullptr;
}

template <class Function>
Function* Find(HINSTANCE library, const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

std::wstring Registered(const GUID& clsid, const wchar_t* value) {
  std::array<wchar_t, 39> id{};
  ::StringFromGUID2(System(clsid), id.data(), 39);
  std::array<wchar_t, 1024> file{};
  DWORD size = sizeof file;
  const std::wstring key = L"Software\\Classes\\CLSID\\" + std::wstring(id.data()) + L"\\InprocServer32";
  if (::RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), value, RRF_RT_REG_SZ, nullptr, file.data(), &size) != 0)
    return L"";
  return file.data();
}

std::wstring RegisteredFile(const GUID& clsid) {
  return Registered(clsid, nullptr);
}

// Registers the classes of the file as the system's own tool does: by its entry point.
class ServerComponents : public testing::Test {
 protected:
  ServerComponents() {
    host::KeepClassesInProcess(false);
    EXPECT_EQ(Call("DllRegisterServer"), kOk);
  }
  ~ServerComponents() override {
    EXPECT_EQ(Call("DllUnregisterServer"), kOk);
    EXPECT_FALSE(IsLoaded());
  }

  static HRESULT Call(const char* entryPoint) {
    HINSTANCE const library = ::LoadLibraryW(L"V_Blur.dll");
    const HRESULT result = Find<HRESULT()>(library, entryPoint)();
    ::FreeLibrary(library);
    return result;
  }

  template <class Interface>
  static ComPtr<Interface> Make(const GUID& clsid) {
    ComPtr<Interface> object;
    EXPECT_EQ(
        ::CoCreateInstance(System(clsid), nullptr, CLSCTX_INPROC_SERVER, System(Interface::kIid), object.Receive()),
        S_OK);
    return object;
  }

  static void Unload() {
    // Twice: what was free at the first call is unloaded without a delay.
    ::CoFreeUnusedLibrariesEx(0, 0);
    ::CoFreeUnusedLibrariesEx(0, 0);
  }
};

class Apartment {
 public:
  explicit Apartment(DWORD kind) { EXPECT_TRUE(SUCCEEDED(::CoInitializeEx(nullptr, kind))); }
  ~Apartment() { ::CoUninitialize(); }
};

TEST_F(ServerComponents, AllClassesAreEnteredWithTheFileAndItsThreads) {
  for (const GUID& clsid : kClasses) {
    const std::wstring file = RegisteredFile(clsid);
    EXPECT_TRUE(file.ends_with(L"\\V_Blur.dll")) << std::string(file.begin(), file.end());
  }
  for (const GUID& clsid : kClasses)
    EXPECT_EQ(Registered(clsid, L"ThreadingModel"), L"Both");
  EXPECT_FALSE(IsLoaded());
}

TEST_F(ServerComponents, LeavingRemovesAllClasses) {
  EXPECT_EQ(Call("DllUnregisterServer"), kOk);
  for (const GUID& clsid : kClasses)
    EXPECT_EQ(RegisteredFile(clsid), L"");
  EXPECT_LT(Call("DllUnregisterServer"), 0) << "there is nothing to remove";
  EXPECT_EQ(Call("DllRegisterServer"), kOk);
}

TEST_F(ServerComponents, TheSystemMakesAnObjectOfEachClass) {
  const Apartment apartment(COINIT_APARTMENTTHREADED);
  for (const GUID& clsid : kClasses)
    EXPECT_TRUE(Make<IUnknown>(clsid));
  EXPECT_TRUE(IsLoaded());
  Unload();
}

TEST_F(ServerComponents, IsUnloadedWhenNothingIsAlive) {
  const Apartment apartment(COINIT_APARTMENTTHREADED);
  auto effect = Make<IDSImageEffect>(classes::kBlur);
  Unload();
  EXPECT_TRUE(IsLoaded()) << "an effect lives";
  effect.reset();
  Unload();
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
  Unload();
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
  Unload();
}

// What the process holds of the system.
struct Holdings {
  DWORD handles = 0;
  DWORD userObjects = 0;
  DWORD drawingObjects = 0;
  SIZE_T heap = 0;
  DWORD threadWord = 0;  // the next of the words that the system has for threads

  static Holdings Now() {
    Holdings now;
    ::GetProcessHandleCount(::GetCurrentProcess(), &now.handles);
    now.userObjects = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS);
    now.drawingObjects = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
    PROCESS_HEAP_ENTRY entry{};
    HANDLE const heap = ::GetProcessHeap();
    ::HeapLock(heap);
    while (::HeapWalk(heap, &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) now.heap += entry.cbData;
    }
    ::HeapUnlock(heap);
    now.threadWord = ::TlsAlloc();
    ::TlsFree(now.threadWord);
    return now;
  }
};

struct Picture final : IDSImage {
  std::vector<std::uint8_t> pixels = std::vector<std::uint8_t>(32 * 32 * 4, 77);

  HRESULT IsUsable() const override { return kOk; }
  GUID Format() const override { return MFIF_RGBA_RAW_32; }
  DSPixelPair Size() const override { return {32, 32}; }
  void* FirstPixel() const override { return const_cast<std::uint8_t*>(pixels.data()); }
  DSWorldPair WorldPosition() const override { return {}; }
  DSWorldPair WorldSize() const override { return {32.0, 32.0}; }
};

void RenderOnce(const ComPtr<IDSImageEffect>& effect) {
  Picture input;
  Picture output;
  tagDSImgFxInfo use;
  use.record = kDSImgFxInfoRecord;
  use.family = families::kFilter;
  EXPECT_EQ(effect->GetImageEffectInfo(&use), kOk);
  EXPECT_EQ(effect->SetInput(&input), kOk);
  EXPECT_EQ(effect->SetOutput(&output), kOk);
  EXPECT_EQ(effect->Verify(), kOk);
  EXPECT_EQ(effect->RenderFrame(0.0), kOk);
  EXPECT_EQ(effect->SetInput(nullptr), kOk);
  EXPECT_EQ(effect->SetOutput(nullptr), kOk);
}

TEST(ServerComponentsAgain, AThousandLoadsLeaveNothing) {
  host::KeepClassesInProcess(true);
  Holdings before;
  constexpr int kLoads = 1000;
  for (int i = 0; i < kLoads; ++i) {
    // The first ones fill what the system keeps.
    if (i == 100) before = Holdings::Now();
    HINSTANCE const library = ::LoadLibraryW(L"V_Blur.dll");
    ASSERT_NE(library, nullptr);
    ASSERT_EQ(Find<HRESULT()>(library, "DllRegisterServer")(), kOk);
    {
      ComPtr<IClassFactory> factory;
      ASSERT_EQ(Find<DllGetClassObjectFunction>(library, "DllGetClassObject")(classes::kBlur, IClassFactory::kIid,
                                                                              factory.Receive()),
                kOk);
      ComPtr<IDSImageEffect> effect;
      ASSERT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
      RenderOnce(effect);
    }
    ASSERT_EQ(Find<HRESULT()>(library, "DllUnregisterServer")(), kOk);
    ASSERT_EQ(Find<HRESULT()>(library, "DllCanUnloadNow")(), kOk);
    ::FreeLibrary(library);
    ASSERT_FALSE(IsLoaded()) << i;
  }
  const Holdings after = Holdings::Now();
  EXPECT_LE(after.handles, before.handles + 4);
  EXPECT_LE(after.userObjects, before.userObjects);
  EXPECT_LE(after.drawingObjects, before.drawingObjects);
  EXPECT_LE(after.heap, before.heap + 4 * 1024);
  EXPECT_EQ(after.threadWord, before.threadWord);
  host::KeepClassesInProcess(false);
}

TEST(ServerComponentsAgain, AHostThatDoesNotAskKeepsItsThreadsCode) {
  host::KeepClassesInProcess(true);
  HINSTANCE const library = ::LoadLibraryW(L"V_Blur.dll");
  ASSERT_NE(library, nullptr);
  auto* const canUnload = Find<HRESULT()>(library, "DllCanUnloadNow");
  {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(Find<DllGetClassObjectFunction>(library, "DllGetClassObject")(classes::kBlur, IClassFactory::kIid,
                                                                            factory.Receive()),
              kOk);
    ComPtr<IDSImageEffect> effect;
    ASSERT_EQ(factory->CreateInstance(nullptr, IDSImageEffect::kIid, effect.Receive()), kOk);
    RenderOnce(effect);
  }
  ::FreeLibrary(library);
  SYSTEM_INFO machine{};
  ::GetSystemInfo(&machine);
  if (machine.dwNumberOfProcessors > 1) {
    ASSERT_TRUE(IsLoaded()) << "threads wait in it for the next frame";
    HINSTANCE const again = ::LoadLibraryW(L"V_Blur.dll");
    EXPECT_EQ(canUnload(), kOk);
    ::FreeLibrary(again);
  }
  EXPECT_FALSE(IsLoaded());
  host::KeepClassesInProcess(false);
}

}  // namespace
}  // namespace vblur
